#include "Store/LastChanges.h"

#include <utility>

namespace FetchyardLogical::details {

void LastChanges::Add(Change change)
{
    const auto [place, is_new] = by_guid_.try_emplace(change.task.guid);
    Change& known = place->second;
    if (is_new || change.kind != Change::Kind::Update) {
        known = std::move(change);
        return;
    }
    if (known.kind == Change::Kind::Remove)
        return;
    known.task = std::move(change.task);
    if (change.resume_text)
        known.resume_text = std::move(change.resume_text);
}

void LastChanges::Add(LastChanges later)
{
    for (auto& [guid, change] : later.by_guid_)
        Add(std::move(change));
}

bool LastChanges::KnowText(const std::string& guid, std::string& text) const
{
    const auto found = by_guid_.find(guid);
    if (found == by_guid_.end())
        return false;
    const Change& change = found->second;
    if (change.kind == Change::Kind::Update && !change.resume_text)
        return false;
    text = change.kind != Change::Kind::Remove && change.resume_text ? *change.resume_text : std::string();
    return true;
}

}  // namespace FetchyardLogical::details
