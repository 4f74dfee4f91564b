#pragma once

#include "ZellNetLink/Export.h"

#include <string>

namespace ZellNetLink {

// A text record whose values are reached by a path: names split by "/", each with an optional index in square
// brackets counted from 1, as in "/FileRequestList[2]/FileRequest/SavePath". A leading "/" may be left out,
// and a final or a doubled one changes nothing. Brackets that do not hold a number belong to the name; an
// index of 0 names nothing.
class ZELLNETLINK_API IProto
{
public:
    IProto() = default;
    IProto(const IProto&) = delete;
    IProto& operator=(const IProto&) = delete;
    virtual ~IProto();
    virtual bool set_str(std::string text) = 0;
    virtual std::string get_str(int reserved) = 0;
    virtual std::string get_node_str(std::string path, int reserved) = 0;
    virtual int get_cnt(std::string path) = 0;
    virtual std::string get_v(std::string path, std::string fallback) = 0;
    virtual int get_int_v(std::string path, int fallback) = 0;
    virtual float get_float_v(std::string path, float fallback) = 0;
    virtual bool get_bool_v(std::string path, bool fallback) = 0;
    virtual bool set_bool_v(std::string path, bool value) = 0;
    virtual bool set_v(void* node, std::string name, int value) = 0;
    virtual bool set_v(void* node, std::string name, std::string value) = 0;
    virtual bool set_v(std::string path, int value) = 0;
    virtual bool set_v(std::string path, std::string value) = 0;
    virtual bool set_float_v(std::string path, float value) = 0;
    virtual void* get_node(std::string path) = 0;
    virtual void* add_v(void* node, std::string name, int value) = 0;
    virtual void* add_v(void* node, std::string name, std::string value) = 0;
    virtual bool add_v(std::string path, std::string name, int value) = 0;
    virtual bool add_v(std::string path, std::string name, std::string value) = 0;
    virtual void* add_list_v(void* node, std::string name, int value) = 0;
    virtual void* add_list_v(void* node, std::string name, std::string value) = 0;
    virtual bool add_list_v(std::string path, std::string name, int value) = 0;
    virtual bool add_list_v(std::string path, std::string name, std::string value) = 0;
    virtual IProto* copy(int reserved) = 0;
    virtual bool clear() = 0;
};

}  // namespace ZellNetLink
