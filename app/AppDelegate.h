#pragma once
#include <search/PendingRequest.h>

#include <optional>

/// Prepares settings before anything else and keeps a companion's request until the main view can take it.
/// One for the whole process, on the main thread.
class AppDelegate final : public PendingRequest
{
public:
    /// Registers defaults and the transformer "LanguageCodeToName", unless the locale has no language code.
    AppDelegate();
    ~AppDelegate() override;
    AppDelegate(const AppDelegate &) = delete;
    AppDelegate &operator=(const AppDelegate &) = delete;

    std::optional<ExternalRequest> externalRequest() const override { return m_externalRequest; }
    void setExternalRequest(const std::optional<ExternalRequest> &request) override
    {
        m_externalRequest = request;
    }

    /// Closing the last window ends the program, always.
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

private:
    std::optional<ExternalRequest> m_externalRequest;
};
