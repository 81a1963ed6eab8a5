// The library as it was when it was loaded: its writable data, put back for every input. Loading it anew would
// do the same, but libFuzzer cannot forget the counters of a library that is unloaded.
#pragma once

#include <dlfcn.h>
#include <link.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace zrfuzz
{

class FreshLibrary
{
public:
    FreshLibrary()
    {
        if (handle_ == nullptr)
            std::abort();
        dl_iterate_phdr(
            [](dl_phdr_info *info, size_t, void *self) {
                if (std::strstr(info->dlpi_name, "libzrlsw.so") != nullptr)
                    static_cast<FreshLibrary *>(self)->keep(*info);
                return 0;
            },
            this);
        if (saved_.empty())
            std::abort();
    }

    // Redzones lie between the data: the copy must go unchecked, and be no call of memcpy.
    __attribute__((no_sanitize("address"))) void restore() const
    {
        for (size_t i = 0; i < saved_.size(); ++i)
            static_cast<volatile uint64_t *>(data_)[i] = saved_[i];
    }

    template <class Function> Function *function(const char *name) const
    {
        return reinterpret_cast<Function *>(dlsym(handle_, name));
    }

private:
    __attribute__((no_sanitize("address"))) void keep(const dl_phdr_info &info)
    {
        uintptr_t start = 0;
        uintptr_t end = 0;
        uintptr_t relro = 0; // ends what is read-only after relocation
        for (const ElfW(Phdr) *header = info.dlpi_phdr; header != info.dlpi_phdr + info.dlpi_phnum; ++header) {
            const uintptr_t from = info.dlpi_addr + header->p_vaddr;
            if (header->p_type == PT_LOAD && (header->p_flags & PF_W) != 0) {
                start = start == 0 ? from : start;
                end = from + header->p_memsz;
            }
            if (header->p_type == PT_GNU_RELRO)
                relro = from + header->p_memsz;
        }
        start = relro > start ? relro : start;
        data_ = reinterpret_cast<uint64_t *>((start + 7) & ~uintptr_t{7});
        const size_t words = (end - reinterpret_cast<uintptr_t>(data_)) / sizeof *data_;
        saved_.resize(words);
        for (size_t i = 0; i < words; ++i)
            saved_[i] = static_cast<volatile uint64_t *>(data_)[i];
    }

    void *handle_ = dlopen(ZRLSW_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    uint64_t *data_ = nullptr;
    std::vector<uint64_t> saved_;
};

} // namespace zrfuzz
