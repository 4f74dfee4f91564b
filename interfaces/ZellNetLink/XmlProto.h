#pragma once

#include "ZellNetLink/Export.h"

#include <memory>
#include <string>
#include <vector>

namespace ZellNetLink {

// XML read by path, in the notation of IProto. The first name of a path is the root element. A name without
// an index is the first element of that name. Namespace prefixes are part of a name; attributes, comments and
// processing instructions are passed over. One object is used by one thread at a time.
class ZELLNETLINK_API CXmlProto
{
public:
    CXmlProto();
    CXmlProto(const CXmlProto&) = delete;
    CXmlProto& operator=(const CXmlProto&) = delete;
    virtual ~CXmlProto();

    // Parses a document; false if it is not XML, and the object is then empty. Refused as well: a text that
    // is not UTF-8 (whatever its declaration says) or holds a zero byte, text beside the root element, and
    // elements nested more than 512 deep. Document types are passed over: no external entity is fetched, and
    // a reference to an entity of the document's own stays as it is written.
    bool set_str(std::string text);
    // Text of the element at the path with its CDATA, without that of elements within it, or the fallback if
    // there is no such element. Blanks count, also where there is nothing else. A line end of the document is
    // a line feed whatever it was, a carriage return is read from its reference "&#13;". A reference to a
    // number that is no letter gives U+FFFD for each of its bytes; one to the number 0 ends its piece of
    // text.
    std::string get_v(std::string path, std::string fallback);
    // The text as a decimal integer with an optional sign and blanks around it; beyond 32 bits its low 32
    // bits, so that 4294967295 is -1. The fallback for any other text.
    int get_int_v(std::string path, int fallback);
    // Number of elements of the last name of the path under its parent; for a path that ends in an index 1 if
    // that element is there, otherwise 0.
    int get_cnt(std::string path);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// An element of a document that is being written. Nothing is added between elements, so texts come back as
// they were: carriage returns are written as references, and tabs, line feeds and blanks stand as they are.
// Only what XML cannot hold, controls and bytes that are not UTF-8, is replaced by U+FFFD. A tree belongs to
// one thread at a time.
class ZELLNETLINK_API XmlNode
{
public:
    // The name is written as it stands, the value in front of the children.
    XmlNode(const std::string& name, const std::string& value);
    XmlNode(const XmlNode&) = delete;
    XmlNode& operator=(const XmlNode&) = delete;
    ~XmlNode();
    // Appends a child behind those that are there; a null one is passed over. A child may have several
    // parents, but is not to stand within itself.
    void AddSub(std::shared_ptr<XmlNode> child);
    // The element with its children as XML text; with true it is the root and the document's declaration
    // stands in front. Empty if elements are nested more than 512 deep, since CXmlProto would refuse that.
    std::string ToString(bool is_document);

private:
    bool Append(std::string& xml, int depth) const;

    std::string name_;
    std::string value_;
    std::vector<std::shared_ptr<XmlNode>> children_;
};

}  // namespace ZellNetLink
