#pragma once

#include "Window/TaskRow.h"

#include <array>
#include <cstddef>
#include <optional>
#include <unordered_map>

namespace FetchyardClient {

enum class SortKey : int { Name, Kind, State, Progress, Start, Error };

// Which tasks are shown.
struct TaskFilter
{
    std::optional<RowState> state;
    QString text;  // part of the name, in any case
};

// The tasks of the list and the order in which they are shown. Plain data: it is filled on one thread and
// given to the model on another.
class TaskOrder
{
public:
    // Slots stay with their task until it is forgotten.
    using Slot = int;
    static constexpr Slot kNone = -1;

    // Fills an empty list. Sorted and filtered anew with Sort.
    void Fill(std::vector<FetchyardLogical::TaskView> tasks);

    Slot Find(const std::string& guid) const;
    const TaskRow& Row(Slot slot) const { return entries_[static_cast<std::size_t>(slot)].row; }
    // Takes over what is known of a task, a new one at the end of the list. The place among those shown is as
    // it was: see Wanted.
    Slot Update(const TaskNews& news);
    // One that is about to be removed and can still come back.
    void SetHidden(Slot slot, bool hidden);
    bool IsHidden(Slot slot) const { return entries_[static_cast<std::size_t>(slot)].is_hidden; }
    // Drops a task that is not shown.
    void Forget(Slot slot);

    void SetFilter(const TaskFilter& filter);
    const TaskFilter& Filter() const { return filter_; }
    void SetSorting(SortKey key, bool descending);
    // Sorts and filters all.
    void Sort();

    // Of those shown, by position.
    int Shown() const { return static_cast<int>(shown_.size()); }
    Slot At(int position) const { return shown_[static_cast<std::size_t>(position)]; }
    // kNone if it is not shown.
    int PositionOf(Slot slot) const { return entries_[static_cast<std::size_t>(slot)].position; }
    bool BelongsToShown(Slot slot) const;
    // Whether a shown one stands right between its neighbours.
    bool IsInOrder(int position) const;
    // Where one that is not shown, or not in order, belongs among the others; of one that is shown, counted
    // with it still in its old place.
    int Wanted(Slot slot) const;
    void Insert(int position, Slot slot);
    void Erase(int position);
    // As a model's move: to is counted with the row still in its place.
    void Move(int from, int to);

    std::size_t Count(RowState state) const { return counts_.at(static_cast<std::size_t>(state)); }
    // All that are in the list and not hidden.
    std::size_t Total() const;
    // Guids of those in the state, hidden ones left out, in the order of the list.
    std::vector<std::string> GuidsIn(RowState state) const;

private:
    struct Entry
    {
        TaskRow row;
        QString folded_name;
        long long place = 0;  // in the engine's list
        int position = kNone;
        bool is_hidden = false;
        bool is_used = false;
        RowState state = RowState::Waiting;
    };

    Slot NewSlot(const std::string& guid);
    bool IsBefore(Slot left, Slot right) const;
    long long NumberKey(const Entry& entry) const;
    QString TextKey(const Entry& entry) const;
    bool IsTextKey() const;
    void Renumber(int first, int last);
    void SortShown();

    std::vector<Entry> entries_;
    std::vector<Slot> free_;
    std::vector<Slot> shown_;
    std::unordered_map<std::string, Slot> slots_;
    std::array<std::size_t, kRowStates> counts_{};
    TaskFilter filter_;
    QString folded_text_;
    SortKey key_ = SortKey::Start;
    bool descending_ = true;
    long long last_place_ = 0;
};

}  // namespace FetchyardClient
