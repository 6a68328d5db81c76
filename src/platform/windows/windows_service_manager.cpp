#include "platform/windows/windows_service_manager.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <memory>

#include "platform/windows/registry_key.h"
#include "platform/windows/system_error.h"
#include "platform/windows/wide.h"

namespace corvalence::platform::windows_system {

namespace {

constexpr const char* kManager = "service manager";

struct CloseService {
    using pointer = SC_HANDLE;
    void operator()(SC_HANDLE handle) const noexcept { ::CloseServiceHandle(handle); }
};
using ServiceHandle = std::unique_ptr<SC_HANDLE, CloseService>;

/// Memory for structures that the system fills and that point into themselves.
using Buffer = std::unique_ptr<std::byte[]>;

std::string textOf(const wchar_t* text) {
    return text == nullptr ? std::string() : toUtf8(text);
}

std::optional<ServiceConfiguration> configurationOf(SC_HANDLE manager, const wchar_t* name) {
    const ServiceHandle service(::OpenServiceW(manager, name, SERVICE_QUERY_CONFIG));
    if (service == nullptr) return std::nullopt;
    DWORD size = 4096;
    for (;;) {
        const Buffer buffer = std::make_unique<std::byte[]>(size);
        auto* const data = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(buffer.get());
        DWORD needed = 0;
        if (::QueryServiceConfigW(service.get(), data, size, &needed) != FALSE) {
            return ServiceConfiguration{textOf(data->lpBinaryPathName), data->dwStartType,
                                        data->dwErrorControl, textOf(data->lpServiceStartName)};
        }
        if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER || needed <= size) return std::nullopt;
        size = needed;
    }
}

/// As it stands in the registry: the manager itself resolves references into libraries, whose texts follow
/// the language of the asking user.
std::string descriptionOf(const wchar_t* name) {
    const RegistryKey key = RegistryKey::open(
        HKEY_LOCAL_MACHINE, std::wstring(L"SYSTEM\\CurrentControlSet\\Services\\") + name, KEY_QUERY_VALUE);
    return key.isOpen() ? toUtf8(key.text(L"Description").value_or(L"")) : std::string();
}

Service serviceOf(SC_HANDLE manager, const ENUM_SERVICE_STATUSW& row) {
    Service service;
    service.name = textOf(row.lpServiceName);
    service.displayName = textOf(row.lpDisplayName);
    service.type = row.ServiceStatus.dwServiceType;
    service.state = row.ServiceStatus.dwCurrentState;
    service.controls = row.ServiceStatus.dwControlsAccepted;
    service.configuration = configurationOf(manager, row.lpServiceName);
    service.description = descriptionOf(row.lpServiceName);
    return service;
}

}  // namespace

std::vector<Service> WindowsServiceManager::services() {
    constexpr DWORD kAllTypes =
        SERVICE_DRIVER | SERVICE_ADAPTER | SERVICE_WIN32 | SERVICE_INTERACTIVE_PROCESS;
    constexpr DWORD kBufferSize = 64 * 1024;  // the most that the call takes
    const ServiceHandle manager(
        ::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT | SC_MANAGER_ENUMERATE_SERVICE));
    if (manager == nullptr) throwSystemError(kManager);

    std::vector<Service> services;
    const Buffer buffer = std::make_unique<std::byte[]>(kBufferSize);
    auto* const rows = reinterpret_cast<ENUM_SERVICE_STATUSW*>(buffer.get());
    DWORD resume = 0;
    for (bool hasMore = true; hasMore;) {
        DWORD needed = 0;
        DWORD count = 0;
        hasMore = ::EnumServicesStatusW(manager.get(), kAllTypes, SERVICE_STATE_ALL, rows, kBufferSize,
                                        &needed, &count, &resume) == FALSE;
        if (hasMore && ::GetLastError() != ERROR_MORE_DATA) throwSystemError(kManager);
        for (DWORD i = 0; i < count; ++i)
            services.push_back(serviceOf(manager.get(), rows[i]));
    }
    std::sort(services.begin(), services.end(),
              [](const Service& a, const Service& b) { return a.name < b.name; });
    return services;
}

}  // namespace corvalence::platform::windows_system
