#include "JsonText.h"

#include "ZellBase/Util.h"

#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string_view>
#include <vector>

namespace ZellNetLink {
namespace {

// Numbers arrive as texts, so that "1.0", "1e3" and integers of any length leave as they came.
constexpr unsigned kParseFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag |
                                 rapidjson::kParseValidateEncodingFlag;

// Builds the tree from the parser's events. False from an event ends the parse.
class TreeBuilder
{
public:
    bool Null() { return Add(JsonNode::Kind::Null) != nullptr; }

    bool Bool(bool value)
    {
        JsonNode* node = Add(JsonNode::Kind::Bool);
        node->flag = value;
        return true;
    }

    bool RawNumber(const char* digits, rapidjson::SizeType length, bool /*copy*/)
    {
        Add(JsonNode::Kind::Number)->text.assign(digits, length);
        return true;
    }

    // An escaped lone surrogate makes a text that is not UTF-8.
    bool String(const char* letters, rapidjson::SizeType length, bool /*copy*/)
    {
        JsonNode* node = Add(JsonNode::Kind::String);
        node->text.assign(letters, length);
        return Zell::Base::IsUtf8(node->text);
    }

    bool Key(const char* letters, rapidjson::SizeType length, bool /*copy*/)
    {
        key_.assign(letters, length);
        return Zell::Base::IsUtf8(key_);
    }

    bool StartObject() { return Open(JsonNode::Kind::Object); }
    bool StartArray() { return Open(JsonNode::Kind::List); }

    bool EndObject(rapidjson::SizeType members)
    {
        if (members > 1)
            open_.back()->KeepLastOfEachName();
        open_.pop_back();
        return true;
    }

    bool EndArray(rapidjson::SizeType /*entries*/)
    {
        open_.pop_back();
        return true;
    }

    // The events of numbers in other forms, which the flags above switch off.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }

    std::unique_ptr<JsonNode> Take() { return std::move(root_); }

private:
    JsonNode* Add(JsonNode::Kind kind)
    {
        JsonNode* node = nullptr;
        if (open_.empty()) {
            root_ = std::make_unique<JsonNode>();
            node = root_.get();
        } else {
            const bool in_object = open_.back()->kind == JsonNode::Kind::Object;
            node = open_.back()->AddChild(in_object ? std::string_view(key_) : std::string_view());
        }
        node->kind = kind;
        return node;
    }

    bool Open(JsonNode::Kind kind)
    {
        if (open_.size() == JsonNode::kMaxDepth)
            return false;
        open_.push_back(Add(kind));
        return true;
    }

    std::unique_ptr<JsonNode> root_;
    std::vector<JsonNode*> open_;
    std::string key_;
};

using TextWriter = rapidjson::Writer<rapidjson::StringBuffer>;

rapidjson::SizeType LengthOf(const std::string& text)
{
    return static_cast<rapidjson::SizeType>(text.size());
}

void WriteNode(const JsonNode& node, TextWriter& writer)
{
    switch (node.kind) {
        case JsonNode::Kind::Null:
            writer.Null();
            return;
        case JsonNode::Kind::Bool:
            writer.Bool(node.flag);
            return;
        case JsonNode::Kind::Number:
            writer.RawValue(node.text.data(), node.text.size(), rapidjson::kNumberType);
            return;
        case JsonNode::Kind::String:
            writer.String(node.text.data(), LengthOf(node.text));
            return;
        case JsonNode::Kind::List:
            writer.StartArray();
            for (const auto& child : node.children)
                WriteNode(*child, writer);
            writer.EndArray();
            return;
        case JsonNode::Kind::Object:
            writer.StartObject();
            for (const auto& child : node.children) {
                writer.Key(child->name.data(), LengthOf(child->name));
                WriteNode(*child, writer);
            }
            writer.EndObject();
            return;
    }
}

}  // namespace

std::unique_ptr<JsonNode> ParseJson(const std::string& text)
{
    // A zero byte would look like the end of the text.
    if (text.find('\0') != std::string::npos)
        return nullptr;
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    const bool marked = text.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0;
    rapidjson::StringStream stream(text.c_str() + (marked ? kByteOrderMark.size() : 0));
    rapidjson::Reader reader;
    TreeBuilder builder;
    if (reader.Parse<kParseFlags>(stream, builder).IsError())
        return nullptr;
    return builder.Take();
}

std::string WriteJson(const JsonNode& node)
{
    rapidjson::StringBuffer buffer;
    TextWriter writer(buffer);
    WriteNode(node, writer);
    return {buffer.GetString(), buffer.GetSize()};
}

}  // namespace ZellNetLink
