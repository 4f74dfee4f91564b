#pragma once

#include "ZellBase/Error.h"
#include "ZellTaskKit/DownloadTypes.h"
#include "ZellTaskKit/Export.h"

#include <mutex>
#include <string>
#include <vector>

namespace ZellTaskKit {

// The parameter record of a task: what the task list shows and the engine keeps. Every accessor takes the
// record's own lock for the length of the copy, since lists are shown while a task runs; a record that is
// copied is copied under that lock. Own members of derived records are not covered by it.
class ZELLTASKKIT_API CDownloadTaskParam
{
public:
    CDownloadTaskParam();
    CDownloadTaskParam(const CDownloadTaskParam& other);
    CDownloadTaskParam& operator=(const CDownloadTaskParam& other);
    virtual ~CDownloadTaskParam();

    // Reads the record from its str_resume_xml. The base has nothing to read and returns false.
    virtual bool ResumeParamFromXml();
    // Writes the record as a Base64 text. The base has nothing to write and returns an empty text.
    virtual std::string CreateResumeXml();

    std::string GetVal_str_guid() const;  // the task's guid; set by CDownloadTaskBase
    void SetVal_str_guid(const std::string& guid);
    std::string GetVal_str_name() const;
    void SetVal_str_name(const std::string& name);
    std::string GetVal_str_file_path() const;  // save folder
    void SetVal_str_file_path(const std::string& path);
    std::string GetVal_str_plugin_id() const;
    void SetVal_str_plugin_id(const std::string& id);
    std::string GetVal_str_resume_xml() const;
    void SetVal_str_resume_xml(const std::string& text);
    std::string GetVal_str_search_xml() const;
    void SetVal_str_search_xml(const std::string& text);
    std::string GetVal_reserve_data() const;
    void SetVal_reserve_data(const std::string& text);
    DownloadFileType GetVal_file_type() const;
    void SetVal_file_type(const DownloadFileType& type);
    DownloadState GetVal_state() const;
    void SetVal_state(const DownloadState& state);
    OpenFileType GetVal_open_type() const;
    void SetVal_open_type(const OpenFileType& type);
    long long GetVal_operate_time() const;  // seconds since 1970
    void SetVal_operate_time(const long long& seconds);
    unsigned long long GetVal_file_size() const;
    void SetVal_file_size(const unsigned long long& size);
    bool GetVal_b_enable_percent() const;
    void SetVal_b_enable_percent(const bool& enable);
    bool GetVal_b_enable_speed() const;
    void SetVal_b_enable_speed(const bool& enable);
    bool GetVal_b_enable_remain_time() const;
    void SetVal_b_enable_remain_time(const bool& enable);
    bool GetVal_b_enable_size() const;
    void SetVal_b_enable_size(const bool& enable);
    bool GetVal_b_show_tip() const;
    void SetVal_b_show_tip(const bool& show);
    Zell::Base::Error::ErrorCode GetVal_error_() const;
    void SetVal_error_(const Zell::Base::Error::ErrorCode& error);

    std::vector<std::string> GetDownloadFileNames() const;
    void SetDownloadFileNames(const std::vector<std::string>& names);
    // Whether the request carries account data, which the engine then renews before a run.
    bool GetIsExportSensitiveInfo() const;
    void SetIsExportSensitiveInfo(bool sensitive);

private:
    // Plain values, so that a copy is one assignment under the lock.
    struct Fields
    {
        std::string str_guid;
        std::string str_name;
        std::string str_file_path;
        std::string str_plugin_id;
        std::string str_resume_xml;
        std::string str_search_xml;
        std::string reserve_data;
        DownloadFileType file_type = VideoFile;
        DownloadState state = Unstarted;
        OpenFileType open_type = OpenNothing;
        long long operate_time = 0;
        unsigned long long file_size = 0;
        bool b_enable_percent = false;
        bool b_enable_speed = false;
        bool b_enable_remain_time = false;
        bool b_enable_size = false;
        bool b_show_tip = false;
        bool b_sensitive = false;
        Zell::Base::Error::ErrorCode error_;
        std::vector<std::string> file_names;
    };

    Fields Snapshot() const;
    template <typename T>
    T Read(T Fields::*field) const;
    template <typename T>
    void Write(T Fields::*field, const T& value);

    mutable std::mutex mutex_;
    Fields fields_;
};

}  // namespace ZellTaskKit
