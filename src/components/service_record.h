#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/service_manager.h"

namespace corvalence::components {

/// Fields of a service's record, by their place.
enum class ServiceField {
    Name,
    DisplayName,
    Type,
    State,
    Controls,
    BinaryPath,
    StartType,
    ErrorControl,
    Account,
    Description
};

struct ServiceFieldRow {
    std::string_view label;  // on a console and in a log
    std::string_view name;   // for documents
};

/// One row a field, in the order of the enumeration.
inline constexpr std::array<ServiceFieldRow, 10> kServiceFields = {{
    {"Service Name: ", "name"},
    {"Display Name: ", "display_name"},
    {"Service Type: ", "type"},
    {"Current status: ", "state"},
    {"Controls Accepted: ", "controls"},
    {"Binary Path: ", "binary_path"},
    {"Startup Type: ", "start_type"},
    {"Error Control: ", "error_control"},
    {"Logon As: ", "account"},
    {"Description: ", "description"},
}};

/// Longest line of a service, its CR LF included.
inline constexpr std::size_t kServiceLineLimit = 14096;

/// The record of a service: its fields, each with the separator behind it; the first five where its
/// configuration must not be read. Line breaks and separators become blanks, so that a record is one line.
std::string renderService(const platform::Service& service);

/// Whether the line of a database is a record.
bool isServiceRecord(std::string_view line) noexcept;
/// The first field.
std::string_view serviceName(std::string_view line) noexcept;

}  // namespace corvalence::components
