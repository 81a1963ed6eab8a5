#!/usr/bin/env python3
"""Writes what the recorder has to know of the platform and of the operation tables, from their headers: the
functions with the names of their arguments, the fields of every record."""
import glob
import re
import sys

source, output = sys.argv[1:]


def read(name, keep="//"):
    text = re.sub(r"//[^\n]*", "", open(f"{source}/{name}").read())
    return re.sub(r"(\s|ZR_EXTERN_C_\w+)+", " ", text if keep == "#" else re.sub(r"(?m)^#[^\n]*\n", "", text))


platform = "".join(read(f"platform/{name}.h") for name in ("chip_sdk", "manager", "board", "bounded"))
records = read("platform/chip_records.h") + read("platform/manager_records.h") + read("platform/manager.h")
tables = read("frame/op_tables.h")


def parameters(text):
    """The names in "uint32_t unit, const uint8_t mac[6]"."""
    if text.strip() == "void":
        return []
    return [re.search(r"(\w+)\s*(?:\[\d+\])?$|\(\*(\w+)\)", part.strip()).group(1) or "callBack"
            for part in re.split(r",(?![^(]*\))", text)]


def bodies(text):
    """Every typedef of a struct or union: its name, its kind and what its braces hold."""
    for match in re.finditer(r"typedef (struct|union)(?: \w+)? \{", text):
        depth, at = 1, match.end()
        while depth:
            depth += {"{": 1, "}": -1}.get(text[at], 0)
            at += 1
        yield re.match(r" (\w+);", text[at:]).group(1), match.group(1), text[match.end():at - 1]


structures = {name: (kind, body) for name, kind, body in bodies(records)}


def fields(name):
    kind, body = structures[name]
    # Of a union the member that covers it.
    body = re.sub(r"union \{.*uint8_t bytes\[(\d+)\]; \} data;", r"uint8_t data.bytes[\1];", body)
    members = re.findall(r"(?:struct )?(\w+) (\*?)([\w.]+)(?:\[\w+\])?;", re.sub(r"\w+ \(\*(\w+)\)\([^)]*\)", r"x *\1", body))
    for type_, pointer, member in members[:1] if kind == "union" else members:
        if type_ in structures and not pointer and "[" not in re.search(rf"\b{re.escape(member)}\b(.)", body).group(1):
            yield from (f"{member}.{inner}" for inner in fields(type_))
        else:
            yield member


with open(output, "w") as out:
    print("// Generated from the headers of src/platform and src/frame.\n#pragma once\n", file=out)
    generic, all_names = [], []
    for match in re.finditer(r"([\w]+(?: \w+)? \*?)(\w+)\(([^;{]*?)\)(?: ZR_PRINTF_LIKE\(\d+, \d+\))?;", platform):
        result, name, arguments = (part.strip() for part in match.groups())
        if name in ("ZR_ASSERT_SIZE", "ZR_ASSERT_OFFSET") or "typedef" in result:
            continue
        all_names.append(name)
        names = parameters(arguments.replace(", ...", ""))
        if "..." in arguments:
            names[-1] = "text"
        print(f'inline constexpr char kNames_{name}[] = "{" ".join(names)}";', file=out)
        if not ("..." in arguments or name.endswith(("_s", "_GetFuncPtr")) or name in ("l2sw_fun_regist", "LSWM_MemAlloc", "LSWM_MemFree")):
            generic.append((result, name, arguments, ", ".join(names)))
    print("\n// Those that are passed on as they are.\n#define ZR_PLAIN_CALLS(X)", end="", file=out)
    for result, name, arguments, names in generic:
        print(f" \\\n    X({result}, {name}, ({arguments}), ({names}))", end="", file=out)
    print("\n\n#define ZR_PLATFORM_CALLS(X)", end="", file=out)
    print("".join(f" \\\n    X({name})" for name in all_names), file=out)
    for table, _, body in bodies(tables):
        for member, arguments in re.findall(r"\(\*(\w+)\)\(((?:[^()]|\([^()]*\))*)\);", body):
            print(f'inline constexpr char kNames_{table}_{member}[] = "{" ".join(parameters(arguments))}";', file=out)
    # Operations that a manager calls by name; one with a slot is known by it.
    slots = set(re.findall(r"X\(\w+, \d+, \w+, (\w+)\)", read("frame/slots.h", keep="#")))
    headers = sorted(glob.glob(f"{source}/[!bpf]*/*.h") + [f"{source}/port/port.h"])
    exported = []
    for header in headers:
        name = header[len(source) + 1:]
        found = [(operation, arguments, parameters(arguments)) for operation, arguments in
                 re.findall(r"ZR_EXPORT uint32_t (\w+)\(([^()]*)\);", read(name))
                 if operation not in slots and re.fullmatch(r"(uint(32|8)_t \*?\w+(, )?)+", arguments)]
        if found:
            print(f'}} // namespace zrrecord\n#include "{name}"\nnamespace zrrecord\n{{', file=out)
        for operation, arguments, names in found:
            print(f'inline constexpr char kNames_{operation}[] = "{" ".join(names)}";', file=out)
            exported.append(f" \\\n    X(uint32_t, {operation}, ({arguments}), ({', '.join(names)}))")
    print("\n#define ZR_EXPORTED_CALLS(X)" + "".join(exported), file=out)
    used = [name for name in structures if re.search(rf"\b{name} \*", platform + tables) or name == "LswmUnitInfo"]
    for name in used:
        if name in ("SdkServices", "LswmPortInfo", "LswmPortSet"):
            continue
        print(f"\ntemplate <> struct Fields<{name}> {{\n    static constexpr Field kList[] = {{", file=out)
        for member in fields(name):
            print(f"        ZR_FIELD({name}, {member}),", file=out)
        print("    };\n};", file=out)
    print("\n#define ZR_RECORDS(X)" + "".join(f" X({name})" for name in used
          if name not in ("SdkServices", "LswmPortInfo", "LswmPortSet", "LswmUnitInfo")), file=out)
