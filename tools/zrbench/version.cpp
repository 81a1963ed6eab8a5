#include "tools/zrbench/version.h"

#include <cstring>
#include <elf.h>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>

#include "tools/zrbench/command.h"

namespace zrbench
{

namespace
{

template <class T> std::optional<T> at(std::string_view file, size_t place)
{
    if (place > file.size() || file.size() - place < sizeof(T))
        return {};
    T value;
    std::memcpy(&value, file.data() + place, sizeof value);
    return value;
}

// The description of the note of this name. A note: sizes of name and description, type; each padded to 4.
std::optional<std::string> noteOf(std::string_view name, std::string_view notes)
{
    const auto padded = [](size_t size) { return (size + 3) & ~size_t{3}; };
    while (const auto head = at<Elf64_Nhdr>(notes, 0)) {
        const std::string_view texts = notes.substr(sizeof *head);
        const size_t described = padded(head->n_namesz);
        const size_t next = described + padded(head->n_descsz);
        if (next > texts.size())
            break;
        // Sizes count the terminator.
        if (texts.substr(0, head->n_namesz) == std::string(name) + '\0' && head->n_descsz > 0)
            return std::string(texts.substr(described, head->n_descsz - 1));
        notes = texts.substr(next);
    }
    return {};
}

} // namespace

std::string version()
{
    return ZRBENCH_VERSION;
}

std::string libraryVersion(const std::string &path)
{
    std::ifstream stream(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad())
        throw UsageError{fmt::format("cannot read {}", path)};
    const std::string_view file = bytes;
    const auto head = at<Elf64_Ehdr>(file, 0);
    if (!head || std::memcmp(head->e_ident, ELFMAG, SELFMAG) != 0 || head->e_ident[EI_CLASS] != ELFCLASS64)
        throw UsageError{fmt::format("{} is no library of this machine", path)};
    for (unsigned i = 0; i < head->e_phnum; ++i) {
        const auto segment = at<Elf64_Phdr>(file, head->e_phoff + i * sizeof(Elf64_Phdr));
        if (!segment || segment->p_type != PT_NOTE || segment->p_offset > file.size())
            continue;
        if (auto found = noteOf("zrlsw", file.substr(segment->p_offset, segment->p_filesz)))
            return *found;
    }
    throw UsageError{fmt::format("{} names no version", path)};
}

} // namespace zrbench
