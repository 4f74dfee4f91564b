#pragma once

#include "ZellBase/Util.h"
#include "ZellNetLink/XmlProto.h"

#include <memory>
#include <string>
#include <utility>

// A resume record is the Base64 of one XML document of elements and text under the root FileExportParams.
namespace FetchyardBussiness {

inline constexpr char kResumeRoot[] = "FileExportParams";
inline constexpr char kResumePrefix[] = "/FileExportParams/";  // of the paths to its elements

// What the element TaskParamType says.
enum ResumeRecordType : int {
    kCompositeExportRecord = 1,
    kPersonPictureRecord = 3,
    kTranscodingRecord = 100,
};

// An element of a resume record under construction.
class ResumeElement
{
public:
    explicit ResumeElement(const std::string& name) : node_(std::make_shared<ZellNetLink::XmlNode>(name, ""))
    {
    }

    ResumeElement& Text(const std::string& name, const std::string& value)
    {
        node_->AddSub(std::make_shared<ZellNetLink::XmlNode>(name, value));
        return *this;
    }
    ResumeElement& Number(const std::string& name, int value) { return Text(name, std::to_string(value)); }
    ResumeElement& Unsigned(const std::string& name, int value)
    {
        return Text(name, std::to_string(static_cast<unsigned int>(value)));
    }
    ResumeElement& Time(const std::string& name, long long value)
    {
        return Text(name, std::to_string(value));
    }
    ResumeElement& Flag(const std::string& name, bool value) { return Number(name, value ? 1 : 0); }
    ResumeElement& Child(const ResumeElement& child)
    {
        node_->AddSub(child.node_);
        return *this;
    }

    // The resume record with this element as its root.
    std::string Record() const
    {
        std::string record;
        Zell::Base::Encrypt::Base64Encode(record, node_->ToString(true));
        return record;
    }

private:
    std::shared_ptr<ZellNetLink::XmlNode> node_;
};

// Reads a resume record below one prefix of its paths. What is absent reads as -1 or an empty text.
class ResumeReader
{
public:
    ResumeReader(ZellNetLink::CXmlProto& document, std::string prefix)
        : document_(document), prefix_(std::move(prefix))
    {
    }

    int Number(const std::string& name) const { return document_.get_int_v(prefix_ + name, kAbsent); }
    std::string Text(const std::string& name) const { return document_.get_v(prefix_ + name, ""); }
    // True for any value but 0, so also if the element is absent.
    bool Flag(const std::string& name) const { return Number(name) != 0; }
    int Count(const std::string& name) const { return document_.get_cnt(prefix_ + name); }
    ResumeReader Below(const std::string& name) const { return {document_, prefix_ + name + "/"}; }
    ResumeReader Entry(const std::string& list, int number) const
    {
        return Below(list + "[" + std::to_string(number) + "]");
    }

private:
    static constexpr int kAbsent = -1;

    ZellNetLink::CXmlProto& document_;
    std::string prefix_;
};

// Decodes and parses a record. False if the text is none.
inline bool OpenResumeRecord(const std::string& record, ZellNetLink::CXmlProto& document)
{
    std::string text;
    Zell::Base::Encrypt::Base64Decode(text, record);
    return !text.empty() && document.set_str(text);
}

}  // namespace FetchyardBussiness
