#include "ZellTaskKit/DownloadTaskParam.h"

#include <utility>

namespace ZellTaskKit {

CDownloadTaskParam::CDownloadTaskParam() = default;

CDownloadTaskParam::CDownloadTaskParam(const CDownloadTaskParam& other) : fields_(other.Snapshot()) {}

// One lock after the other, never both: two records may be assigned to each other at the same time.
CDownloadTaskParam& CDownloadTaskParam::operator=(const CDownloadTaskParam& other)
{
    Fields copy = other.Snapshot();
    const std::lock_guard<std::mutex> lock(mutex_);
    std::swap(fields_, copy);
    return *this;
}

CDownloadTaskParam::~CDownloadTaskParam() = default;

bool CDownloadTaskParam::ResumeParamFromXml()
{
    return false;
}

std::string CDownloadTaskParam::CreateResumeXml()
{
    return {};
}

CDownloadTaskParam::Fields CDownloadTaskParam::Snapshot() const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return fields_;
}

template <typename T>
T CDownloadTaskParam::Read(T Fields::*field) const
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return fields_.*field;
}

template <typename T>
void CDownloadTaskParam::Write(T Fields::*field, const T& value)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    fields_.*field = value;
}

std::string CDownloadTaskParam::GetVal_str_guid() const
{
    return Read(&Fields::str_guid);
}

void CDownloadTaskParam::SetVal_str_guid(const std::string& guid)
{
    Write(&Fields::str_guid, guid);
}

std::string CDownloadTaskParam::GetVal_str_name() const
{
    return Read(&Fields::str_name);
}

void CDownloadTaskParam::SetVal_str_name(const std::string& name)
{
    Write(&Fields::str_name, name);
}

std::string CDownloadTaskParam::GetVal_str_file_path() const
{
    return Read(&Fields::str_file_path);
}

void CDownloadTaskParam::SetVal_str_file_path(const std::string& path)
{
    Write(&Fields::str_file_path, path);
}

std::string CDownloadTaskParam::GetVal_str_plugin_id() const
{
    return Read(&Fields::str_plugin_id);
}

void CDownloadTaskParam::SetVal_str_plugin_id(const std::string& id)
{
    Write(&Fields::str_plugin_id, id);
}

std::string CDownloadTaskParam::GetVal_str_resume_xml() const
{
    return Read(&Fields::str_resume_xml);
}

void CDownloadTaskParam::SetVal_str_resume_xml(const std::string& text)
{
    Write(&Fields::str_resume_xml, text);
}

std::string CDownloadTaskParam::GetVal_str_search_xml() const
{
    return Read(&Fields::str_search_xml);
}

void CDownloadTaskParam::SetVal_str_search_xml(const std::string& text)
{
    Write(&Fields::str_search_xml, text);
}

std::string CDownloadTaskParam::GetVal_reserve_data() const
{
    return Read(&Fields::reserve_data);
}

void CDownloadTaskParam::SetVal_reserve_data(const std::string& text)
{
    Write(&Fields::reserve_data, text);
}

DownloadFileType CDownloadTaskParam::GetVal_file_type() const
{
    return Read(&Fields::file_type);
}

void CDownloadTaskParam::SetVal_file_type(const DownloadFileType& type)
{
    Write(&Fields::file_type, type);
}

DownloadState CDownloadTaskParam::GetVal_state() const
{
    return Read(&Fields::state);
}

void CDownloadTaskParam::SetVal_state(const DownloadState& state)
{
    Write(&Fields::state, state);
}

OpenFileType CDownloadTaskParam::GetVal_open_type() const
{
    return Read(&Fields::open_type);
}

void CDownloadTaskParam::SetVal_open_type(const OpenFileType& type)
{
    Write(&Fields::open_type, type);
}

long long CDownloadTaskParam::GetVal_operate_time() const
{
    return Read(&Fields::operate_time);
}

void CDownloadTaskParam::SetVal_operate_time(const long long& seconds)
{
    Write(&Fields::operate_time, seconds);
}

unsigned long long CDownloadTaskParam::GetVal_file_size() const
{
    return Read(&Fields::file_size);
}

void CDownloadTaskParam::SetVal_file_size(const unsigned long long& size)
{
    Write(&Fields::file_size, size);
}

bool CDownloadTaskParam::GetVal_b_enable_percent() const
{
    return Read(&Fields::b_enable_percent);
}

void CDownloadTaskParam::SetVal_b_enable_percent(const bool& enable)
{
    Write(&Fields::b_enable_percent, enable);
}

bool CDownloadTaskParam::GetVal_b_enable_speed() const
{
    return Read(&Fields::b_enable_speed);
}

void CDownloadTaskParam::SetVal_b_enable_speed(const bool& enable)
{
    Write(&Fields::b_enable_speed, enable);
}

bool CDownloadTaskParam::GetVal_b_enable_remain_time() const
{
    return Read(&Fields::b_enable_remain_time);
}

void CDownloadTaskParam::SetVal_b_enable_remain_time(const bool& enable)
{
    Write(&Fields::b_enable_remain_time, enable);
}

bool CDownloadTaskParam::GetVal_b_enable_size() const
{
    return Read(&Fields::b_enable_size);
}

void CDownloadTaskParam::SetVal_b_enable_size(const bool& enable)
{
    Write(&Fields::b_enable_size, enable);
}

bool CDownloadTaskParam::GetVal_b_show_tip() const
{
    return Read(&Fields::b_show_tip);
}

void CDownloadTaskParam::SetVal_b_show_tip(const bool& show)
{
    Write(&Fields::b_show_tip, show);
}

Zell::Base::Error::ErrorCode CDownloadTaskParam::GetVal_error_() const
{
    return Read(&Fields::error_);
}

void CDownloadTaskParam::SetVal_error_(const Zell::Base::Error::ErrorCode& error)
{
    Write(&Fields::error_, error);
}

std::vector<std::string> CDownloadTaskParam::GetDownloadFileNames() const
{
    return Read(&Fields::file_names);
}

void CDownloadTaskParam::SetDownloadFileNames(const std::vector<std::string>& names)
{
    Write(&Fields::file_names, names);
}

bool CDownloadTaskParam::GetIsExportSensitiveInfo() const
{
    return Read(&Fields::b_sensitive);
}

void CDownloadTaskParam::SetIsExportSensitiveInfo(bool sensitive)
{
    Write(&Fields::b_sensitive, sensitive);
}

}  // namespace ZellTaskKit
