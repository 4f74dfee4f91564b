#include "ZellNetLink/RapidJsonProto.h"

#include "JsonNode.h"
#include "JsonText.h"
#include "NumberText.h"
#include "RecordPath.h"
#include "Utf8Text.h"

#include <functional>
#include <utility>

namespace ZellNetLink {
namespace {

using Setter = std::function<void(JsonNode&)>;

Setter Integer(int value)
{
    return [value](JsonNode& node) {
        node.Become(JsonNode::Kind::Number);
        node.text = std::to_string(value);
    };
}

Setter Text(std::string value)
{
    return [text = Utf8Repaired(value)](JsonNode& node) {
        node.Become(JsonNode::Kind::String);
        node.text = text;
    };
}

Setter Flag(bool value)
{
    return [value](JsonNode& node) {
        node.Become(JsonNode::Kind::Bool);
        node.flag = value;
    };
}

JsonNode* NodeOf(void* handle)
{
    return static_cast<JsonNode*>(handle);
}

// A path without a step would name the node itself, which a value cannot be put under.
bool SetUnder(JsonNode* node, std::string_view path_text, const Setter& setter)
{
    const auto path = ParseRecordPath(path_text);
    if (node == nullptr || !path || path->empty())
        return false;
    JsonNode* target = node->FindOrCreate(*path);
    if (target == nullptr)
        return false;
    setter(*target);
    return true;
}

JsonNode* AddMember(JsonNode* node, const std::string& name, const Setter& setter)
{
    if (node == nullptr || node->depth > JsonNode::kMaxDepth)
        return nullptr;
    if (node->kind == JsonNode::Kind::Null)
        node->Become(JsonNode::Kind::Object);
    const std::string member = Utf8Repaired(name);
    if (node->kind != JsonNode::Kind::Object || node->Member(member) != nullptr)
        return nullptr;
    JsonNode* added = node->AddChild(member);
    setter(*added);
    return added;
}

// The list that an entry goes to: the member of that name, or the node itself for an empty name.
JsonNode* ListFor(JsonNode* node, const std::string& name)
{
    if (node == nullptr)
        return nullptr;
    const std::size_t entry_depth = node->depth + (name.empty() ? 0 : 1);
    if (entry_depth > JsonNode::kMaxDepth)
        return nullptr;
    JsonNode* list = node;
    if (!name.empty()) {
        if (node->kind != JsonNode::Kind::Null && node->kind != JsonNode::Kind::Object)
            return nullptr;
        if (node->kind == JsonNode::Kind::Null)
            node->Become(JsonNode::Kind::Object);
        const std::string member = Utf8Repaired(name);
        list = node->Member(member);
        if (list == nullptr)
            list = node->AddChild(member);
    }
    if (list->kind == JsonNode::Kind::Null)
        list->Become(JsonNode::Kind::List);
    return list->kind == JsonNode::Kind::List ? list : nullptr;
}

JsonNode* AddEntry(JsonNode* node, const std::string& name, const Setter& setter)
{
    JsonNode* list = ListFor(node, name);
    if (list == nullptr)
        return nullptr;
    JsonNode* added = list->AddChild({});
    setter(*added);
    return added;
}

}  // namespace

struct CRapidJsonProto::Impl
{
    Impl() { root.kind = JsonNode::Kind::Object; }

    JsonNode* Find(const std::string& path_text)
    {
        const auto path = ParseRecordPath(path_text);
        return path ? root.Find(*path) : nullptr;
    }

    JsonNode* Find(const std::string& path_text, JsonNode::Kind kind)
    {
        JsonNode* node = Find(path_text);
        return node != nullptr && node->kind == kind ? node : nullptr;
    }

    // A node that gets a member or entry; nothing is made if that would lie too deep.
    JsonNode* NodeToAddTo(const std::string& path_text, std::size_t levels)
    {
        const auto path = ParseRecordPath(path_text);
        return path ? root.FindOrCreate(*path, levels) : nullptr;
    }

    void Clear() { root.Become(JsonNode::Kind::Object); }

    JsonNode root;
};

CRapidJsonProto::CRapidJsonProto() : impl_(std::make_unique<Impl>()) {}

CRapidJsonProto::~CRapidJsonProto() = default;

bool CRapidJsonProto::set_str(std::string text)
{
    impl_->Clear();
    const std::unique_ptr<JsonNode> parsed = ParseJson(text);
    if (!parsed)
        return false;
    impl_->root = std::move(*parsed);
    return true;
}

std::string CRapidJsonProto::get_str(int /*reserved*/)
{
    return WriteJson(impl_->root);
}

std::string CRapidJsonProto::get_node_str(std::string path, int /*reserved*/)
{
    const JsonNode* node = impl_->Find(path);
    return node == nullptr ? std::string() : WriteJson(*node);
}

int CRapidJsonProto::get_cnt(std::string path)
{
    const JsonNode* list = impl_->Find(path, JsonNode::Kind::List);
    return list == nullptr ? 0 : static_cast<int>(list->children.size());
}

std::string CRapidJsonProto::get_v(std::string path, std::string fallback)
{
    const JsonNode* node = impl_->Find(path, JsonNode::Kind::String);
    return node == nullptr ? fallback : node->text;
}

int CRapidJsonProto::get_int_v(std::string path, int fallback)
{
    const JsonNode* node = impl_->Find(path, JsonNode::Kind::Number);
    return node == nullptr ? fallback : IntegerFromJsonNumber(node->text).value_or(fallback);
}

float CRapidJsonProto::get_float_v(std::string path, float fallback)
{
    const JsonNode* node = impl_->Find(path, JsonNode::Kind::Number);
    return node == nullptr ? fallback : FloatFromJsonNumber(node->text).value_or(fallback);
}

bool CRapidJsonProto::get_bool_v(std::string path, bool fallback)
{
    const JsonNode* node = impl_->Find(path, JsonNode::Kind::Bool);
    return node == nullptr ? fallback : node->flag;
}

bool CRapidJsonProto::set_bool_v(std::string path, bool value)
{
    return SetUnder(&impl_->root, path, Flag(value));
}

bool CRapidJsonProto::set_v(void* node, std::string name, int value)
{
    return SetUnder(NodeOf(node), name, Integer(value));
}

bool CRapidJsonProto::set_v(void* node, std::string name, std::string value)
{
    return SetUnder(NodeOf(node), name, Text(std::move(value)));
}

bool CRapidJsonProto::set_v(std::string path, int value)
{
    return SetUnder(&impl_->root, path, Integer(value));
}

bool CRapidJsonProto::set_v(std::string path, std::string value)
{
    return SetUnder(&impl_->root, path, Text(std::move(value)));
}

bool CRapidJsonProto::set_float_v(std::string path, float value)
{
    const std::optional<std::string> number = JsonNumberFromFloat(value);
    if (!number)
        return false;
    return SetUnder(&impl_->root, path, [&number](JsonNode& node) {
        node.Become(JsonNode::Kind::Number);
        node.text = *number;
    });
}

void* CRapidJsonProto::get_node(std::string path)
{
    return impl_->Find(path);
}

void* CRapidJsonProto::add_v(void* node, std::string name, int value)
{
    return AddMember(NodeOf(node), name, Integer(value));
}

void* CRapidJsonProto::add_v(void* node, std::string name, std::string value)
{
    return AddMember(NodeOf(node), name, Text(std::move(value)));
}

bool CRapidJsonProto::add_v(std::string path, std::string name, int value)
{
    return AddMember(impl_->NodeToAddTo(path, 1), name, Integer(value)) != nullptr;
}

bool CRapidJsonProto::add_v(std::string path, std::string name, std::string value)
{
    return AddMember(impl_->NodeToAddTo(path, 1), name, Text(std::move(value))) != nullptr;
}

void* CRapidJsonProto::add_list_v(void* node, std::string name, int value)
{
    return AddEntry(NodeOf(node), name, Integer(value));
}

void* CRapidJsonProto::add_list_v(void* node, std::string name, std::string value)
{
    return AddEntry(NodeOf(node), name, Text(std::move(value)));
}

bool CRapidJsonProto::add_list_v(std::string path, std::string name, int value)
{
    return AddEntry(impl_->NodeToAddTo(path, name.empty() ? 1 : 2), name, Integer(value)) != nullptr;
}

bool CRapidJsonProto::add_list_v(std::string path, std::string name, std::string value)
{
    return AddEntry(impl_->NodeToAddTo(path, name.empty() ? 1 : 2), name, Text(std::move(value))) != nullptr;
}

IProto* CRapidJsonProto::copy(int /*reserved*/)
{
    auto twin = std::make_unique<CRapidJsonProto>();
    twin->impl_->root.CopyFrom(impl_->root);
    return twin.release();
}

bool CRapidJsonProto::clear()
{
    impl_->Clear();
    return true;
}

}  // namespace ZellNetLink
