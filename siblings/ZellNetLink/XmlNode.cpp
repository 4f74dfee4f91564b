#include "Utf8Text.h"
#include "XmlText.h"
#include "ZellNetLink/XmlProto.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ZellNetLink {
namespace {

// What XML 1.0 has no way to hold, not even escaped: controls other than tab, line feed and carriage return,
// and the two letters at the end of the first plane.
bool IsXmlLetter(std::string_view letter)
{
    if (letter.size() == 1) {
        const auto code = static_cast<unsigned char>(letter.front());
        return code >= 0x20 || code == '\t' || code == '\n' || code == '\r';
    }
    return letter != "\xEF\xBF\xBE" && letter != "\xEF\xBF\xBF";
}

void AppendLetter(std::string_view letter, std::string& xml)
{
    switch (letter.front()) {
        case '&':
            xml += "&amp;";
            return;
        case '<':
            xml += "&lt;";
            return;
        case '>':
            xml += "&gt;";
            return;
        case '\r':  // a bare one would be read as a line feed
            xml += "&#13;";
            return;
        default:
            xml += IsXmlLetter(letter) ? letter : kReplacementLetter;
    }
}

void AppendText(std::string_view text, std::string& xml)
{
    while (!text.empty()) {
        const std::size_t length = Utf8LetterLength(text);
        if (length == 0)
            xml += kReplacementLetter;
        else
            AppendLetter(text.substr(0, length), xml);
        text.remove_prefix(length == 0 ? 1 : length);
    }
}

}  // namespace

XmlNode::XmlNode(const std::string& name, const std::string& value) : name_(name), value_(value) {}

// One level at a time, so that elements within elements do not end each other in as many calls.
XmlNode::~XmlNode()
{
    std::vector<std::shared_ptr<XmlNode>> nodes = std::move(children_);
    while (!nodes.empty()) {
        const std::shared_ptr<XmlNode> node = std::move(nodes.back());
        nodes.pop_back();
        if (node.use_count() > 1)
            continue;
        std::move(node->children_.begin(), node->children_.end(), std::back_inserter(nodes));
        node->children_.clear();
    }
}

void XmlNode::AddSub(std::shared_ptr<XmlNode> child)
{
    if (child)
        children_.push_back(std::move(child));
}

std::string XmlNode::ToString(bool is_document)
{
    std::string xml;
    if (is_document)
        xml = R"(<?xml version="1.0" encoding="UTF-8"?>)";
    if (!Append(xml, 1))
        xml.clear();
    return xml;
}

bool XmlNode::Append(std::string& xml, int depth) const
{
    if (depth > kMaxXmlDepth)
        return false;
    xml += '<';
    xml += name_;
    if (value_.empty() && children_.empty()) {
        xml += "/>";
        return true;
    }
    xml += '>';
    AppendText(value_, xml);
    for (const auto& child : children_) {
        if (!child->Append(xml, depth + 1))
            return false;
    }
    xml += "</";
    xml += name_;
    xml += '>';
    return true;
}

}  // namespace ZellNetLink
