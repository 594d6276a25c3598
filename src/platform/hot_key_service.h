#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace brisk {

/// A status of the hot key service; 0 is success.
using OSStatus = std::int32_t;
inline constexpr OSStatus noErr = 0;
/// The handler did not want the event.
inline constexpr OSStatus eventNotHandledErr = -9874;
/// The combination is held already, by another program or by an earlier registration of ours.
inline constexpr OSStatus eventHotKeyExistsErr = -9878;
/// The key code or the modifiers name no combination that can be registered here.
inline constexpr OSStatus eventHotKeyInvalidErr = -9879;

/// Modifier masks of hot keys (Carbon).
inline constexpr std::uint32_t cmdKey = 256;
inline constexpr std::uint32_t shiftKey = 512;
inline constexpr std::uint32_t optionKey = 2048;
inline constexpr std::uint32_t controlKey = 4096;

/// The caller's name for a hot key: who registered it, and which one it is.
struct EventHotKeyID {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;
    friend bool operator==(const EventHotKeyID&, const EventHotKeyID&) = default;
};

/// Opaque references; never 0 for something that exists.
enum class EventHandlerRef : std::uint64_t {};
enum class EventHotKeyRef : std::uint64_t {};

/// Called on the main thread for each press with the hot key's id (absent when the event carries none, which a handler
/// does not handle). Returns `noErr` or `eventNotHandledErr`; it must not run the command itself, only schedule it.
using HotKeyPressedHandler = std::function<OSStatus(std::optional<EventHotKeyID>)>;

struct EventHandlerInstallation {
    OSStatus status = noErr;
    EventHandlerRef handler{};
};

struct HotKeyRegistration {
    OSStatus status = noErr;
    EventHotKeyRef hotKey{};
};

/// System-wide shortcuts: they fire whatever application is in front, and the press reaches nobody else. Main thread
/// only. Ids are the caller's; a press is reported by id, never by key. A key held down reports one press.
class HotKeyService {
public:
    virtual ~HotKeyService() = default;

    /// Installs the handler of hot-key-pressed events. On failure nothing is installed and the status says why.
    [[nodiscard]] virtual EventHandlerInstallation InstallEventHandler(HotKeyPressedHandler handler) = 0;
    virtual void RemoveEventHandler(EventHandlerRef handler) = 0;

    /// Registers key code (virtual key code, a position on the keyboard) and modifier mask under `id`. On failure
    /// nothing is registered and the status says why: `eventHotKeyExistsErr` when the combination is held already.
    [[nodiscard]] virtual HotKeyRegistration RegisterEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                                 EventHotKeyID id) = 0;
    virtual void UnregisterEventHotKey(EventHotKeyRef hotKey) = 0;

    /// Lets go of every combination, registrations stay: from the return of this call on their keys are keys like any
    /// other. Registering goes on to work and takes effect later.
    virtual void suspend() = 0;
    /// Ends one `suspend`, and with the last one the combinations are taken again. One that another program has taken
    /// meanwhile stays registered without effect until it can be had.
    virtual void resume() = 0;
};

/// Hot keys are suspended for as long as this lives.
class HotKeySuspension {
public:
    explicit HotKeySuspension(HotKeyService& service) : service_(service) { service_.suspend(); }
    HotKeySuspension(const HotKeySuspension&) = delete;
    HotKeySuspension& operator=(const HotKeySuspension&) = delete;
    ~HotKeySuspension() { service_.resume(); }

private:
    HotKeyService& service_;
};

} // namespace brisk
