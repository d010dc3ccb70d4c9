#include "standalone/Journal.h"

namespace standalone {

std::size_t Journal::addRead(std::wstring_view path)
{
    all.emplace_back(PackedRead{texts.keep(path)});
    return all.size() - 1;
}

std::size_t Journal::addAnnouncement(std::wstring_view name, int kind)
{
    all.emplace_back(PackedAnnouncement{texts.keep(name), kind});
    return all.size() - 1;
}

JournalEntry Journal::unpacked(const Kept& kept)
{
    if (const auto* const read = std::get_if<PackedRead>(&kept)) {
        return ManifestRead{PackedTexts::unpacked(read->path), true, false, {}, 0, 0};
    }
    if (const auto* const announcement = std::get_if<PackedAnnouncement>(&kept)) {
        return CommandAnnounced{PackedTexts::unpacked(announcement->name), announcement->kind};
    }
    return *std::get<std::unique_ptr<JournalEntry>>(kept);
}

JournalEntry* Journal::unpackedForChange(std::size_t index)
{
    Kept& kept = all[index];
    if (std::holds_alternative<PackedRead>(kept)) {
        kept = std::make_unique<JournalEntry>(unpacked(kept));
    }
    const auto* const entry = std::get_if<std::unique_ptr<JournalEntry>>(&kept);
    return entry != nullptr ? entry->get() : nullptr;
}

std::vector<JournalEntry> Journal::since(std::size_t begin) const
{
    std::vector<JournalEntry> entries;
    for (std::size_t index = begin; index < size(); ++index) {
        entries.push_back(at(index));
    }
    return entries;
}

void Journal::clear() noexcept
{
    std::vector<Kept>().swap(all);
    texts.clear();
}

} // namespace standalone
