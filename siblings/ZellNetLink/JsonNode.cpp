#include "JsonNode.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace ZellNetLink {
namespace {

// Whether a step could be taken in a node of that kind, were it there. Null becomes what is needed.
bool Fits(const PathStep& step, JsonNode::Kind kind)
{
    if (kind == JsonNode::Kind::Null)
        return true;
    if (kind == JsonNode::Kind::List)
        return step.kind == PathStep::Kind::Index || step.bare_number.has_value();
    return kind == JsonNode::Kind::Object && step.kind == PathStep::Kind::Name;
}

std::size_t IndexInList(const PathStep& step)
{
    return step.kind == PathStep::Kind::Index ? step.index : *step.bare_number;
}

bool NamesOneOf(const PathStep& step, const JsonNode& node)
{
    return node.kind != JsonNode::Kind::List || IndexInList(step) <= node.children.size() + JsonNode::kMaxGap;
}

// Of the steps that lead through nodes yet to be made: the empty entries of all their lists together count.
bool CanBeMade(const RecordPath& path, std::size_t first)
{
    std::size_t gap = 0;
    return std::all_of(path.begin() + static_cast<std::ptrdiff_t>(first), path.end(),
                       [&gap](const PathStep& step) {
                           gap += step.kind == PathStep::Kind::Index ? step.index : 0;
                           return gap <= JsonNode::kMaxGap;
                       });
}

}  // namespace

JsonNode* JsonNode::Member(std::string_view member) const
{
    if (kind != Kind::Object)
        return nullptr;
    const auto found = std::find_if(children.begin(), children.end(),
                                    [&](const auto& child) { return child->name == member; });
    return found == children.end() ? nullptr : found->get();
}

JsonNode* JsonNode::AddChild(std::string_view child_name)
{
    children.push_back(std::make_unique<JsonNode>());
    children.back()->name = child_name;
    children.back()->depth = depth + 1;
    return children.back().get();
}

JsonNode* JsonNode::Step(const PathStep& step) const
{
    if (kind == Kind::Object)
        return step.kind == PathStep::Kind::Name ? Member(step.name) : nullptr;
    if (kind != Kind::List || !Fits(step, kind))
        return nullptr;
    const std::size_t index = IndexInList(step);
    return index < children.size() ? children[index].get() : nullptr;
}

JsonNode* JsonNode::Find(const RecordPath& path)
{
    JsonNode* node = this;
    for (auto step = path.begin(); node != nullptr && step != path.end(); ++step)
        node = node->Step(*step);
    return node;
}

JsonNode* JsonNode::StepOrCreate(const PathStep& step)
{
    if (kind == Kind::Null)
        Become(step.kind == PathStep::Kind::Index ? Kind::List : Kind::Object);
    if (JsonNode* present = Step(step))
        return present;
    if (kind == Kind::Object)
        return AddChild(step.name);
    while (children.size() <= IndexInList(step))
        AddChild({});
    return children.back().get();
}

JsonNode* JsonNode::FindOrCreate(const RecordPath& path, std::size_t below)
{
    // First what is there, without a change, so that a refusal leaves nothing behind.
    const JsonNode* present = this;
    std::size_t taken = 0;
    while (taken < path.size()) {
        if (!Fits(path[taken], present->kind) || !NamesOneOf(path[taken], *present))
            return nullptr;
        const JsonNode* next = present->Step(path[taken]);
        if (next == nullptr)
            break;
        present = next;
        ++taken;
    }
    if (depth + path.size() + below > kMaxDepth + 1 || !CanBeMade(path, std::min(taken + 1, path.size())))
        return nullptr;
    if (taken < path.size() && present->kind == Kind::Null && !CanBeMade(path, taken))
        return nullptr;
    JsonNode* node = this;
    for (const PathStep& step : path)
        node = node->StepOrCreate(step);
    return node;
}

void JsonNode::Become(Kind new_kind)
{
    kind = new_kind;
    flag = false;
    text.clear();
    children.clear();
}

void JsonNode::CopyFrom(const JsonNode& other)
{
    Become(other.kind);
    flag = other.flag;
    text = other.text;
    children.reserve(other.children.size());
    for (const auto& child : other.children)
        AddChild(child->name)->CopyFrom(*child);
}

void JsonNode::KeepLastOfEachName()
{
    std::unordered_map<std::string_view, std::size_t> first_places;
    first_places.reserve(children.size());
    for (std::size_t i = 0; i < children.size(); ++i) {
        const auto [place, is_new] = first_places.try_emplace(children[i]->name, i);
        if (is_new)
            continue;
        // The earlier node stays, since the map's key is a view of its name.
        JsonNode& earlier = *children[place->second];
        earlier.kind = children[i]->kind;
        earlier.flag = children[i]->flag;
        earlier.text.swap(children[i]->text);
        earlier.children.swap(children[i]->children);
        children[i].reset();
    }
    children.erase(std::remove(children.begin(), children.end(), nullptr), children.end());
}

}  // namespace ZellNetLink
