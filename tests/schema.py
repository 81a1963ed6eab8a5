#!/usr/bin/env python3
"""schema.py ZRBENCH FILE...: the schema that zrbench writes takes every device file, and refuses what zrbench does."""
import json
import re
import subprocess
import sys

import jsonschema

zrbench, files = sys.argv[1], sys.argv[2:]
schema = json.loads(subprocess.run([zrbench, "schema"], check=True, capture_output=True).stdout)
jsonschema.Draft7Validator.check_schema(schema)
validator = jsonschema.Draft7Validator(schema)
failed = []


def without_comments(text):
    return re.sub(r'("(?:\\.|[^"\\])*")|//[^\n]*|/\*.*?\*/', lambda m: m[1] or "", text, flags=re.S)


for name in files:
    with open(name, encoding="utf-8") as file:
        device = json.loads(without_comments(file.read()))
    failed += [f"{name}: /{'/'.join(map(str, e.absolute_path))}: {e.message[:200]}" for e in validator.iter_errors(device)]

REFUSED = [
    {"stepz": []},
    {"units": [{"unit": 3}]},
    {"units": [{"unit": 1, "portSet": {}}]},
    {"cables": [["0/15"]]},
    {"steps": ["vlan fly 1"]},
    {"steps": ["vlan"]},
    {"steps": [{"do": "vlan create 1 10", "expects": 4}]},
    {"steps": [{"do": "vlan create", "unit": 1, "vlan": "ten"}]},
    {"steps": [{"do": "vlan create", "unit": 1, "port": 3}]},
    {"steps": [{"do": "vlan add 1 10", "ports": [1]}]},
    {"steps": [{"do": "mac add", "unit": 1, "mac": "02:00", "vlan": 1, "port": 1}]},
    {"steps": [{"do": "port enable 1 3", "enable": "maybe"}]},
    {"steps": [{"do": "acl add 1", "rule": {"partitions": 1}}]},
    {"steps": [{"do": "chip init 1", "expect": -1}]},
    {"steps": [{"do": "chip init $u", "each": {}}]},
    {"steps": [{"say": "a", "do": "ops"}]},
]
failed += [f"not refused: {json.dumps(device)}" for device in REFUSED if validator.is_valid(device)]

print("\n".join(failed) or f"{len(files)} files as the schema has it, {len(REFUSED)} refused")
sys.exit(1 if failed or not files else 0)
