#include "platform/linux/elf_build_id.h"

#include <elf.h>

#include <cstring>
#include <optional>
#include <span>

namespace kelvane::linux_os {
namespace {

constexpr std::size_t mostHeaders = 64;
constexpr std::size_t largestNotes = 64 * 1024;
constexpr std::size_t longestBuildId = 64;

std::optional<Elf64_Ehdr> headerAt(const ProcessReader& reader, std::uint64_t base)
{
    const auto header = reader.object<Elf64_Ehdr>(base);
    const bool usable = header && std::memcmp(header->e_ident, ELFMAG, SELFMAG) == 0 &&
                        header->e_ident[EI_CLASS] == ELFCLASS64 && header->e_phentsize == sizeof(Elf64_Phdr) &&
                        header->e_phnum <= mostHeaders;
    return usable ? header : std::nullopt;
}

std::vector<Elf64_Phdr> programHeaders(const ProcessReader& reader, std::uint64_t base)
{
    std::vector<Elf64_Phdr> headers;
    const auto elf = headerAt(reader, base);
    for (std::uint64_t i = 0; elf && i < elf->e_phnum; ++i) {
        if (const auto header = reader.object<Elf64_Phdr>(base + elf->e_phoff + i * sizeof(Elf64_Phdr)))
            headers.push_back(*header);
    }
    return headers;
}

// What has to be added to the file's own addresses.
std::uint64_t loadBias(std::span<const Elf64_Phdr> headers, std::uint64_t base)
{
    for (const Elf64_Phdr& header : headers)
        if (header.p_type == PT_LOAD)
            return base - (header.p_vaddr - header.p_offset);
    return base;
}

constexpr std::size_t padded(std::size_t size)
{
    return (size + 3) / 4 * 4;
}

// Goes through notes: each has sizes and a type, then its name and its contents, padded to four bytes.
std::vector<std::byte> buildIdIn(std::span<const std::byte> notes)
{
    Elf64_Nhdr note;
    while (notes.size() >= sizeof note) {
        std::memcpy(&note, notes.data(), sizeof note);
        const std::size_t contents = sizeof note + padded(note.n_namesz);
        const std::size_t next = contents + padded(note.n_descsz);
        if (next > notes.size())
            break;
        const bool gnu = note.n_namesz == 4 && std::memcmp(notes.data() + sizeof note, "GNU", 4) == 0;
        if (gnu && note.n_type == NT_GNU_BUILD_ID && note.n_descsz <= longestBuildId) {
            const auto id = notes.subspan(contents, note.n_descsz);
            return {id.begin(), id.end()};
        }
        notes = notes.subspan(next);
    }
    return {};
}

}  // namespace

std::vector<std::byte> elfBuildId(const ProcessReader& reader, std::uint64_t base)
{
    const std::vector<Elf64_Phdr> headers = programHeaders(reader, base);
    const std::uint64_t bias = loadBias(headers, base);
    for (const Elf64_Phdr& header : headers) {
        if (header.p_type != PT_NOTE || header.p_memsz > largestNotes)
            continue;
        if (auto id = buildIdIn(reader.memory(bias + header.p_vaddr, header.p_memsz)); !id.empty())
            return id;
    }
    return {};
}

}  // namespace kelvane::linux_os
