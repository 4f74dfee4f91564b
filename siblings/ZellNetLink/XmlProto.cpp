#include "ZellNetLink/XmlProto.h"

#include "NumberText.h"
#include "RecordPath.h"
#include "Utf8Text.h"
#include "XmlText.h"
#include "ZellBase/Util.h"

#include <pugixml.hpp>

#include <map>
#include <string_view>
#include <utility>

namespace ZellNetLink {
namespace {

// Blank-only texts count, and texts beside the root show, so that they can be refused. Document types are
// passed over unread: no entity but the five of XML is ever expanded.
constexpr unsigned kParseFlags = pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_fragment;

bool IsBlank(std::string_view text)
{
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

bool IsText(const pugi::xml_node& node)
{
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

bool HasOneRootAndNothingBeside(const pugi::xml_document& document)
{
    int roots = 0;
    for (const pugi::xml_node& node : document) {
        if (node.type() == pugi::node_element)
            ++roots;
        else if (node.type() == pugi::node_cdata || (IsText(node) && !IsBlank(node.value())))
            return false;
    }
    return roots == 1;
}

struct DepthWalker : pugi::xml_tree_walker
{
    // The root element has depth 0 here.
    bool for_each(pugi::xml_node& node) override
    {
        return node.type() != pugi::node_element || depth() < kMaxXmlDepth;
    }
};

std::string_view Trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string TextOf(const pugi::xml_node& element)
{
    std::string text;
    for (const pugi::xml_node& child : element) {
        if (IsText(child))
            text += child.value();
    }
    return Utf8Repaired(text);  // a numeric reference may name what is no letter
}

}  // namespace

struct CXmlProto::Impl
{
    using Elements = std::vector<pugi::xml_node>;

    // The elements of a name under a parent. Kept from one look to the next: records are read entry by entry,
    // and walking the list anew for each would cost the square of its length.
    const Elements& ElementsOf(const pugi::xml_node& parent, const std::string& name)
    {
        const auto [place, is_new] = lists.try_emplace({parent.internal_object(), name});
        if (is_new) {
            for (const pugi::xml_node& child : parent.children(name.c_str()))
                place->second.push_back(child);
        }
        return place->second;
    }

    // The element at the path; a name without an index is its first element.
    pugi::xml_node Find(const RecordPath& path)
    {
        pugi::xml_node node = document;
        for (std::size_t i = 0; i < path.size() && node; ++i) {
            if (path[i].kind == PathStep::Kind::Index)
                return {};
            if (i + 1 == path.size() || path[i + 1].kind == PathStep::Kind::Name) {
                node = node.child(path[i].name.c_str());
                continue;
            }
            const Elements& elements = ElementsOf(node, path[i].name);
            ++i;
            node = path[i].index < elements.size() ? elements[path[i].index] : pugi::xml_node();
        }
        return node;
    }

    pugi::xml_node Find(const std::string& path_text)
    {
        const auto path = ParseRecordPath(path_text);
        return path && !path->empty() ? Find(*path) : pugi::xml_node();
    }

    void Clear()
    {
        lists.clear();
        document.reset();
    }

    pugi::xml_document document;
    std::map<std::pair<const void*, std::string>, Elements> lists;
};

CXmlProto::CXmlProto() : impl_(std::make_unique<Impl>()) {}

CXmlProto::~CXmlProto() = default;

bool CXmlProto::set_str(std::string text)
{
    impl_->Clear();
    if (text.find('\0') != std::string::npos || !Zell::Base::IsUtf8(text))
        return false;
    const pugi::xml_parse_result result =
        impl_->document.load_buffer(text.data(), text.size(), kParseFlags, pugi::encoding_utf8);
    DepthWalker walker;
    if (result && HasOneRootAndNothingBeside(impl_->document) && impl_->document.traverse(walker))
        return true;
    impl_->Clear();
    return false;
}

std::string CXmlProto::get_v(std::string path, std::string fallback)
{
    const pugi::xml_node element = impl_->Find(path);
    return element ? TextOf(element) : fallback;
}

int CXmlProto::get_int_v(std::string path, int fallback)
{
    const pugi::xml_node element = impl_->Find(path);
    return element ? IntegerFromText(Trimmed(TextOf(element))).value_or(fallback) : fallback;
}

int CXmlProto::get_cnt(std::string path)
{
    auto steps = ParseRecordPath(path);
    if (!steps || steps->empty())
        return 0;
    if (steps->back().kind == PathStep::Kind::Index)
        return impl_->Find(*steps) ? 1 : 0;
    const std::string name = steps->back().name;
    steps->pop_back();
    const pugi::xml_node parent = steps->empty() ? impl_->document : impl_->Find(*steps);
    return parent ? static_cast<int>(impl_->ElementsOf(parent, name).size()) : 0;
}

}  // namespace ZellNetLink
