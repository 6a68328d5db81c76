#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <memory>
#include <optional>

#include "platform/windows/windows_service_manager.h"

namespace corvalence::test {
namespace {

struct CloseService {
    using pointer = SC_HANDLE;
    void operator()(SC_HANDLE handle) const noexcept { ::CloseServiceHandle(handle); }
};
using ServiceHandle = std::unique_ptr<SC_HANDLE, CloseService>;

/// A service that is never started, gone at the end.
class InstalledService {
  public:
    InstalledService(const wchar_t* name, const wchar_t* shown, const wchar_t* description)
        : manager_(::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)),
          service_(::CreateServiceW(manager_.get(), name, shown, SERVICE_ALL_ACCESS,
                                    SERVICE_WIN32_OWN_PROCESS, SERVICE_DISABLED, SERVICE_ERROR_SEVERE,
                                    L"C:\\some where\\x.exe -a", nullptr, nullptr, nullptr, nullptr,
                                    nullptr)) {
        SERVICE_DESCRIPTIONW text{const_cast<wchar_t*>(description)};
        if (service_ != nullptr) ::ChangeServiceConfig2W(service_.get(), SERVICE_CONFIG_DESCRIPTION, &text);
    }
    ~InstalledService() {
        if (service_ != nullptr) ::DeleteService(service_.get());
    }
    InstalledService(const InstalledService&) = delete;
    InstalledService& operator=(const InstalledService&) = delete;

    bool isThere() const { return service_ != nullptr; }

  private:
    ServiceHandle manager_;
    ServiceHandle service_;
};

TEST(Services, areListedByNameWithEveryField) {
    platform::windows_system::WindowsServiceManager manager;
    const auto found = [&manager]() -> std::optional<platform::Service> {
        const auto services = manager.services();
        EXPECT_GT(services.size(), 1U);
        EXPECT_TRUE(std::is_sorted(services.begin(), services.end(),
                                   [](const auto& a, const auto& b) { return a.name < b.name; }));
        const auto service = std::find_if(services.begin(), services.end(),
                                          [](const auto& each) { return each.name == "CorvalenceTest"; });
        return service == services.end() ? std::nullopt : std::optional(*service);
    };
    EXPECT_FALSE(found());
    {
        const InstalledService installed(L"CorvalenceTest", L"Name \u4e00", L"two\nlines");
        if (!installed.isThere()) GTEST_SKIP() << "may not install a service here";
        const platform::ServiceConfiguration configuration{"C:\\some where\\x.exe -a", 4, 2, "LocalSystem"};
        EXPECT_EQ(found(), (platform::Service{"CorvalenceTest", "Name \xE4\xB8\x80", 0x10, 1, 0,
                                              configuration, "two\nlines"}));
    }
    EXPECT_FALSE(found());
}

}  // namespace
}  // namespace corvalence::test
