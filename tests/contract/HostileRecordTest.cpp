// Resume records of every kind as a bad disk, another program or a later version may leave them. Whatever
// stands in one: there is an answer, and a task exactly where the answer and the type say so.
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "FetchyardBussiness/TranscodingTask/TranscodingParam.h"
#include "support/ContractTest.h"
#include "support/ResumeRecords.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace contract {
namespace {

using namespace FetchyardBussiness;
using ZellTaskKit::CDownloadTaskBase;
using ZellTaskKit::CDownloadTaskParam;

// One element of a document: its name and the places of its tags.
struct Element
{
    std::string name;
    std::size_t begin = 0;
    std::size_t text = 0;      // behind the opening tag
    std::size_t text_end = 0;  // of what stands between the tags, elements within it included
    std::size_t end = 0;
    bool is_leaf = true;
};

// All elements below the root, at any depth. Records have neither attributes nor comments.
std::vector<Element> AllElements(const std::string& xml)
{
    std::vector<Element> done;
    std::vector<Element> open;
    for (std::size_t at = xml.find("<FileExportParams"); at != std::string::npos;
         at = xml.find('<', at + 1)) {
        const std::size_t close = xml.find('>', at);
        if (xml[at + 1] == '/') {
            Element element = open.back();
            open.pop_back();
            element.text_end = at;
            element.end = close + 1;
            if (!open.empty())
                done.push_back(element);
            continue;
        }
        if (!open.empty())
            open.back().is_leaf = false;
        const bool is_empty = xml[close - 1] == '/';
        Element element;
        element.name = xml.substr(at + 1, close - at - 1 - (is_empty ? 1 : 0));
        element.begin = at;
        element.text = element.text_end = element.end = close + 1;
        if (!is_empty)
            open.push_back(element);
        else
            done.push_back(element);
    }
    return done;
}

std::string Transcoding()
{
    TranscodingParam record;
    record.SetVal_str_name("Stamp");
    record.transcode_files.resize(2);
    record.transcode_files[0].save_file = "/save/a.mp4";
    record.transcode_files[1].save_file = "/save/b.mp4";
    return Decoded(record.CreateResumeXml());
}

class HostileRecordTest : public ContractTest, public testing::WithParamInterface<const char*>
{
protected:
    HostileRecordTest()
    {
        fakes::TheScript().public_data_path = "/save/";
        xml_ = GetParam() == std::string("transcoding")
                   ? Transcoding()
                   : Golden(std::string("resume-") + GetParam() + ".xml");
        fakes::SetRecording(false);
    }

    // A record that comes back can be written out again, whatever was in it.
    bool Resume(const std::string& record)
    {
        task_ = nullptr;
        const bool answer = CDownloadBussinessManager::Instance().ResumeDownloadTask(task_, record);
        if (task_) {
            EXPECT_FALSE(task_->GetDownloadTaskParam<CDownloadTaskParam>()->CreateResumeXml().empty());
        }
        return answer;
    }
    bool ResumeXml(const std::string& xml) { return Resume(Encoded(xml)); }

    std::string xml_;
    std::shared_ptr<CDownloadTaskBase> task_;
};

TEST_P(HostileRecordTest, RecordCutAtAnyByteIsRefusedOrComesBack)
{
    const std::string record = Encoded(xml_);
    for (std::size_t size = 0; size < record.size(); ++size) {
        const bool answer = Resume(record.substr(0, size));
        ASSERT_EQ(answer, task_ != nullptr) << size;
    }
    for (std::size_t size = 0; size < xml_.size(); ++size)
        ASSERT_FALSE(ResumeXml(xml_.substr(0, size))) << size;
}

TEST_P(HostileRecordTest, RecordWithoutAnyElementAtAnyDepthComesBack)
{
    const std::vector<Element> elements = AllElements(xml_);
    ASSERT_GE(elements.size(), 6U);
    for (const Element& element : elements) {
        std::string shorter = xml_;
        shorter.erase(element.begin, element.end - element.begin);
        ASSERT_TRUE(ResumeXml(shorter)) << element.name;
        ASSERT_EQ(task_ == nullptr, element.name == "TaskParamType") << element.name;
    }
}

TEST_P(HostileRecordTest, RecordWithAnyElementTwiceComesBack)
{
    for (const Element& element : AllElements(xml_)) {
        std::string longer = xml_;
        longer.insert(element.begin, xml_.substr(element.begin, element.end - element.begin));
        ASSERT_TRUE(ResumeXml(longer)) << element.name;
        ASSERT_NE(task_, nullptr) << element.name;
    }
}

TEST_P(HostileRecordTest, RecordWithAnyTextReplacedComesBack)
{
    for (const char* const text :
         {"99999999999999999999", "-99999999999999999999", "2147483648", "4294967295", "-2147483649", "1e400",
          "NaN", "", "%s%n", "../../..", "<New/>"}) {
        for (const Element& element : AllElements(xml_)) {
            if (!element.is_leaf || element.text_end == element.text || element.name == "TaskParamType")
                continue;
            std::string other = xml_;
            other.replace(element.text, element.text_end - element.text, text);
            ASSERT_TRUE(ResumeXml(other)) << element.name << " " << text;
            ASSERT_NE(task_, nullptr) << element.name << " " << text;
        }
    }
}

TEST_P(HostileRecordTest, RecordUnderAnyOtherTypeComesBackAsThat)
{
    const std::vector<Element> elements = AllElements(xml_);
    const Element& type = elements.front();
    ASSERT_EQ(type.name, "TaskParamType");
    // A number is its low 32 bits.
    const std::vector<std::pair<std::string, bool>> types = {
        {"1", true},    {"3", true},   {"100", true}, {"0", false},        {"2", false},
        {"101", false}, {"-1", false}, {"x", false},  {"4294967297", true}};
    for (const auto& [number, is_known] : types) {
        std::string other = xml_;
        other.replace(type.text, type.text_end - type.text, number);
        ASSERT_TRUE(ResumeXml(other)) << number;
        ASSERT_EQ(task_ != nullptr, is_known) << number;
    }
}

TEST_P(HostileRecordTest, ElementsOfALaterVersionAtAnyPlaceArePassedOver)
{
    for (const Element& element : AllElements(xml_)) {
        std::string longer = xml_;
        longer.insert(element.begin, "<Later version='9'><Deep>1</Deep></Later>");
        ASSERT_TRUE(ResumeXml(longer)) << element.name;
        ASSERT_NE(task_, nullptr) << element.name;
        const auto record = task_->GetDownloadTaskParam<CDownloadTaskParam>();
        ASSERT_TRUE(ResumeXml(xml_));
        const auto plain = task_->GetDownloadTaskParam<CDownloadTaskParam>();
        ASSERT_EQ(record->CreateResumeXml(), plain->CreateResumeXml()) << element.name;
    }
}

INSTANTIATE_TEST_SUITE_P(, HostileRecordTest,
                         testing::Values("plain", "full", "person", "person-password", "transcoding"),
                         [](const auto& kind) {
                             const std::string name = kind.param;
                             return name == "person-password" ? std::string("person_password") : name;
                         });

}  // namespace
}  // namespace contract
