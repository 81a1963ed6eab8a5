#include "tools/zrbench/platform.h"

#include <dlfcn.h>
#include <elf.h>
#include <filesystem>
#include <fmt/format.h>
#include <link.h>

namespace zrbench
{

std::string located(const std::string &name)
{
    if (name.find('/') != std::string::npos)
        return name;
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    for (const char *libraries : {"../lib", ZRBENCH_LIBRARIES}) {
        const auto file = (self.parent_path() / libraries / name).lexically_normal();
        if (!error && std::filesystem::exists(file, error))
            return file.string();
    }
    return name;
}

SharedObject::SharedObject(const std::string &path, int flags) : path_(path)
{
    // The loader would wait for a FIFO's writer.
    std::error_code error;
    if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error))
        throw UsageError{fmt::format("cannot load {}: not a regular file", path)};
    handle_ = dlopen(path.c_str(), flags);
    if (handle_ == nullptr)
        throw UsageError{fmt::format("cannot load {}: {}", path, dlerror())};
}

void *SharedObject::find(const char *name) const
{
    return dlsym(handle_, name);
}

bool SharedObject::hasFunction(const char *name) const
{
    Dl_info info{};
    void *symbol = nullptr; // an ElfW(Sym)
    const void *address = find(name);
    return address != nullptr && dladdr1(address, &info, &symbol, RTLD_DL_SYMENT) != 0 && symbol != nullptr &&
           ELF64_ST_TYPE(static_cast<const ElfW(Sym) *>(symbol)->st_info) == STT_FUNC;
}

std::vector<std::string> SharedObject::functions() const
{
    link_map *loaded = nullptr;
    const ElfW(Sym) *symbols = nullptr;
    const char *strings = nullptr;
    const uint32_t *hash = nullptr; // GNU: buckets, first symbol, words of a filter; filter, buckets, chains
    if (dlinfo(handle_, RTLD_DI_LINKMAP, &loaded) != 0)
        return {};
    for (const ElfW(Dyn) *entry = loaded->l_ld; entry->d_tag != DT_NULL; ++entry) {
        const auto *at = reinterpret_cast<const char *>(entry->d_un.d_ptr);
        if (entry->d_tag == DT_SYMTAB)
            symbols = reinterpret_cast<const ElfW(Sym) *>(at);
        else if (entry->d_tag == DT_STRTAB)
            strings = at;
        else if (entry->d_tag == DT_GNU_HASH)
            hash = reinterpret_cast<const uint32_t *>(at);
    }
    std::vector<std::string> names;
    if (symbols == nullptr || strings == nullptr || hash == nullptr)
        return names;
    const uint32_t *buckets = hash + 4 + hash[2] * sizeof(ElfW(Addr)) / sizeof(uint32_t);
    const uint32_t *chains = buckets + hash[0];
    for (uint32_t bucket = 0; bucket < hash[0]; ++bucket) {
        for (uint32_t i = buckets[bucket]; i != 0; ++i) {
            if (ELF64_ST_TYPE(symbols[i].st_info) == STT_FUNC)
                names.emplace_back(strings + symbols[i].st_name);
            if ((chains[i - hash[1]] & 1) != 0) // the last of its bucket
                break;
        }
    }
    return names;
}

void *SharedObject::need(const char *name) const
{
    if (void *symbol = find(name))
        return symbol;
    throw UsageError{fmt::format("{} has no {}", path_, name)};
}

Inspection::Inspection(const SharedObject &platform)
{
    auto look = [&]<class T>(T *&member, const char *name) {
        member = reinterpret_cast<T *>(platform.find(name));
    };
    look(onLine, "zrsim_on_line");
    look(onCall, "zrsim_on_call");
    look(fail, "zrsim_fail");
    look(failNone, "zrsim_fail_none");
    look(calls, "zrsim_calls");
    look(frame, "zrsim_frame");
    look(traceLevel, "zrsim_trace_level");
    look(liveBlocks, "zrsim_live_blocks");
    look(badFrees, "zrsim_bad_frees");
    look(dump, "zrsim_dump");
    look(boardUsage, "zrsim_board_usage");
}

Tables registerOperations(const SharedObject &platform, const SharedObject &library)
{
    constexpr uint32_t kValue = 0; // handed to the getters unchanged; means nothing to the library
    library.need<void(uint32_t)>("ZR_COMMON_FuncListInit")(kValue);

    auto fetch = [&]<class T>(T *&table, const char *getter) {
        table = static_cast<T *>(platform.need<void *(uint32_t)>(getter)(kValue));
        if (table == nullptr)
            throw UsageError{fmt::format("{} returns no table", getter)};
    };
    Tables tables{};
    fetch(tables.common, "LSW_Common_GetFuncPtr");
    fetch(tables.port, "LSW_PORT_GetFuncPtr");
    fetch(tables.mac, "LSW_MAC_GetFuncPtr");
    fetch(tables.vlan, "LSW_VLAN_GetFuncPtr");
    fetch(tables.qos, "LSW_QOS_GetFuncPtr");
    fetch(tables.acl, "LSW_ACL_GetFuncPtr");
    fetch(tables.hsec, "LSW_HSEC_GetFuncPtr");
    fetch(tables.mc, "LSW_MC_GetFuncPtr");
    fetch(tables.stormctl, "LSW_STORMCTL_GetFuncPtr");
    fetch(tables.stp, "LSW_STP_GetFuncPtr");
    fetch(tables.trunk, "LSW_TRUNK_GetFuncPtr");
    fetch(tables.fmea, "LSW_FMEA_GetFuncPtr");
    return tables;
}

} // namespace zrbench
