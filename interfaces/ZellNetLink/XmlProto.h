#pragma once

#include "ZellNetLink/Export.h"

#include <memory>
#include <string>
#include <vector>

namespace ZellNetLink {

// XML read by path, in the notation of IProto. The first name of a path is the root element.
class ZELLNETLINK_API CXmlProto
{
public:
    CXmlProto();
    CXmlProto(const CXmlProto&) = delete;
    CXmlProto& operator=(const CXmlProto&) = delete;
    virtual ~CXmlProto();

    // Parses a document; false if it is not XML. External entities are never fetched.
    bool set_str(std::string text);
    // Text of the element at the path, or the fallback if there is no such element.
    std::string get_v(std::string path, std::string fallback);
    int get_int_v(std::string path, int fallback);
    // Number of elements of the last name of the path under its parent.
    int get_cnt(std::string path);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// An element of a document that is being written.
class ZELLNETLINK_API XmlNode
{
public:
    XmlNode(const std::string& name, const std::string& value);
    // Appends a child behind those that are there.
    void AddSub(std::shared_ptr<XmlNode> child);
    // The element with its children as XML text; with true it is the root and the document's declaration
    // stands in front.
    std::string ToString(bool is_document);

private:
    std::string name_;
    std::string value_;
    std::vector<std::shared_ptr<XmlNode>> children_;
};

}  // namespace ZellNetLink
