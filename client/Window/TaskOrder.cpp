#include "Window/TaskOrder.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace FetchyardClient {

using FetchyardLogical::TaskView;

namespace {

constexpr int kFoldedLetters = 10000;

QString FoldedName(const TaskView& task)
{
    return QString::fromStdString(task.name).left(kFoldedLetters).toCaseFolded();
}

}  // namespace

void TaskOrder::Fill(std::vector<TaskView> tasks)
{
    entries_.reserve(tasks.size());
    slots_.reserve(tasks.size());
    for (TaskView& task : tasks) {
        TaskNews news;
        news.row.task = std::move(task);
        Update(news);
    }
    Sort();
}

TaskOrder::Slot TaskOrder::Find(const std::string& guid) const
{
    const auto found = slots_.find(guid);
    return found == slots_.end() ? kNone : found->second;
}

TaskOrder::Slot TaskOrder::NewSlot(const std::string& guid)
{
    Slot slot = static_cast<Slot>(entries_.size());
    if (free_.empty()) {
        entries_.emplace_back();
    } else {
        slot = free_.back();
        free_.pop_back();
    }
    entries_[static_cast<std::size_t>(slot)].place = ++last_place_;
    slots_[guid] = slot;
    return slot;
}

TaskOrder::Slot TaskOrder::Update(const TaskNews& news)
{
    const std::string& guid = news.row.task.guid;
    Slot slot = Find(guid);
    if (slot == kNone && !news.in_place_of.empty()) {
        slot = Find(news.in_place_of);
        if (slot != kNone) {
            slots_.erase(news.in_place_of);
            slots_[guid] = slot;
        }
    }
    if (slot == kNone)
        slot = NewSlot(guid);
    Entry& entry = entries_[static_cast<std::size_t>(slot)];
    if (entry.is_used && !entry.is_hidden)
        --counts_.at(static_cast<std::size_t>(entry.state));
    const TaskRow before = entry.row;
    entry.row = news.row;
    // A look at the state alone takes nothing back from what was measured, of one run.
    if (!news.row.is_measured && before.is_measured && before.task.started == news.row.task.started) {
        entry.row.bytes = before.bytes;
        entry.row.pictures = before.pictures;
        entry.row.is_measured = true;
    }
    if (!entry.is_used || before.task.name != news.row.task.name)
        entry.folded_name = FoldedName(news.row.task);
    entry.is_used = true;
    entry.state = StateOf(entry.row.task);
    if (!entry.is_hidden)
        ++counts_.at(static_cast<std::size_t>(entry.state));
    return slot;
}

void TaskOrder::SetHidden(Slot slot, bool hidden)
{
    Entry& entry = entries_[static_cast<std::size_t>(slot)];
    if (entry.is_hidden == hidden)
        return;
    entry.is_hidden = hidden;
    std::size_t& count = counts_.at(static_cast<std::size_t>(entry.state));
    count = hidden ? count - 1 : count + 1;
}

void TaskOrder::Forget(Slot slot)
{
    SetHidden(slot, true);
    slots_.erase(Row(slot).task.guid);
    entries_[static_cast<std::size_t>(slot)] = Entry();
    free_.push_back(slot);
}

void TaskOrder::SetFilter(const TaskFilter& filter)
{
    filter_ = filter;
    folded_text_ = filter.text.trimmed().toCaseFolded();
}

void TaskOrder::SetSorting(SortKey key, bool descending)
{
    key_ = key;
    descending_ = descending;
}

bool TaskOrder::BelongsToShown(Slot slot) const
{
    const Entry& entry = entries_[static_cast<std::size_t>(slot)];
    if (!entry.is_used || entry.is_hidden || (filter_.state && *filter_.state != entry.state))
        return false;
    return folded_text_.isEmpty() || entry.folded_name.contains(folded_text_);
}

bool TaskOrder::IsTextKey() const
{
    return key_ == SortKey::Name || key_ == SortKey::Kind || key_ == SortKey::Error;
}

long long TaskOrder::NumberKey(const Entry& entry) const
{
    switch (key_) {
        case SortKey::State:
            return static_cast<long long>(entry.state);
        case SortKey::Progress:
            return static_cast<long long>(entry.row.bytes);
        default:
            return StartOf(entry.row.task);
    }
}

QString TaskOrder::TextKey(const Entry& entry) const
{
    switch (key_) {
        case SortKey::Name:
            return entry.folded_name;
        case SortKey::Kind:
            return KindText(entry.row.task);
        default:
            return ErrorText(entry.row.task);
    }
}

bool TaskOrder::IsBefore(Slot left_slot, Slot right_slot) const
{
    const Entry& left = entries_[static_cast<std::size_t>(left_slot)];
    const Entry& right = entries_[static_cast<std::size_t>(right_slot)];
    int difference = 0;
    if (IsTextKey()) {
        difference = TextKey(left).compare(TextKey(right));
    } else {
        const long long left_key = NumberKey(left);
        const long long right_key = NumberKey(right);
        difference = left_key < right_key ? -1 : (left_key > right_key ? 1 : 0);
    }
    if (difference == 0)
        return descending_ ? left.place > right.place : left.place < right.place;
    return (difference < 0) != descending_;
}

// With the keys gathered first: a comparison then touches a few bytes, not two rows.
template <typename Key, typename KeyOf>
static void SortSlots(std::vector<TaskOrder::Slot>& sorted, bool descending, const KeyOf& key_of)
{
    std::vector<std::tuple<Key, long long, TaskOrder::Slot>> keys;
    keys.reserve(sorted.size());
    for (const TaskOrder::Slot slot : sorted)
        keys.push_back(key_of(slot));
    std::sort(keys.begin(), keys.end());
    if (descending)
        std::reverse(keys.begin(), keys.end());
    for (std::size_t i = 0; i < sorted.size(); ++i)
        sorted[i] = std::get<2>(keys[i]);
}

void TaskOrder::SortShown()
{
    const auto entry_of = [this](Slot slot) -> const Entry& {
        return entries_[static_cast<std::size_t>(slot)];
    };
    if (IsTextKey()) {
        SortSlots<QString>(shown_, descending_, [&](Slot slot) {
            return std::make_tuple(TextKey(entry_of(slot)), entry_of(slot).place, slot);
        });
    } else {
        SortSlots<long long>(shown_, descending_, [&](Slot slot) {
            return std::make_tuple(NumberKey(entry_of(slot)), entry_of(slot).place, slot);
        });
    }
}

void TaskOrder::Sort()
{
    shown_.clear();
    for (Slot slot = 0; slot < static_cast<Slot>(entries_.size()); ++slot) {
        entries_[static_cast<std::size_t>(slot)].position = kNone;
        if (BelongsToShown(slot))
            shown_.push_back(slot);
    }
    SortShown();
    Renumber(0, Shown());
}

bool TaskOrder::IsInOrder(int position) const
{
    return (position == 0 || IsBefore(At(position - 1), At(position))) &&
           (position + 1 == Shown() || IsBefore(At(position), At(position + 1)));
}

int TaskOrder::Wanted(Slot slot) const
{
    const int own = PositionOf(slot);
    auto begin = shown_.begin();
    auto end = shown_.end();
    if (own != kNone) {
        // The others are in order on both sides of it, not across it.
        const bool goes_up = own > 0 && IsBefore(slot, At(own - 1));
        (goes_up ? end : begin) = shown_.begin() + own + (goes_up ? 0 : 1);
    }
    const auto before = [this](Slot left, Slot right) { return IsBefore(left, right); };
    return static_cast<int>(std::lower_bound(begin, end, slot, before) - shown_.begin());
}

void TaskOrder::Renumber(int first, int last)
{
    for (int position = first; position < last; ++position)
        entries_[static_cast<std::size_t>(At(position))].position = position;
}

void TaskOrder::Insert(int position, Slot slot)
{
    shown_.insert(shown_.begin() + position, slot);
    Renumber(position, Shown());
}

void TaskOrder::Erase(int position)
{
    entries_[static_cast<std::size_t>(At(position))].position = kNone;
    shown_.erase(shown_.begin() + position);
    Renumber(position, Shown());
}

void TaskOrder::Move(int from, int to)
{
    const auto begin = shown_.begin();
    if (to > from)
        std::rotate(begin + from, begin + from + 1, begin + to);
    else
        std::rotate(begin + to, begin + from, begin + from + 1);
    Renumber(std::min(from, to), std::max(from + 1, to));
}

std::size_t TaskOrder::Total() const
{
    std::size_t total = 0;
    for (const std::size_t count : counts_)
        total += count;
    return total;
}

std::vector<std::string> TaskOrder::GuidsIn(RowState state) const
{
    std::vector<std::pair<long long, std::string>> found;
    for (const Entry& entry : entries_) {
        if (entry.is_used && !entry.is_hidden && entry.state == state)
            found.emplace_back(entry.place, entry.row.task.guid);
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> guids;
    guids.reserve(found.size());
    for (auto& [place, guid] : found)
        guids.push_back(std::move(guid));
    return guids;
}

}  // namespace FetchyardClient
