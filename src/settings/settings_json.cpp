#include "settings/settings_json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <concepts>
#include <limits>
#include <optional>
#include <stdexcept>
#include <utility>

namespace brisk {

namespace {

using Json = nlohmann::json;

/// Carries a description from the value that is wrong to `decodeSettings`, and no further.
class WrongValue : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What would make the tree of `text` too deep or too large, if anything. Checked on the text: a tree takes many times
/// its size, so it must not be built only to be refused.
std::optional<SettingsDecodingError> exceededLimit(std::string_view text) {
    std::size_t depth = 0;
    std::size_t values = 1;
    bool isInString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char character = text[i];
        if (isInString) {
            if (character == '\\') {
                ++i;
            } else if (character == '"') {
                isInString = false;
            }
        } else if (character == '"') {
            isInString = true;
        } else if (character == '[' || character == '{') {
            ++values;
            ++depth;
        } else if (character == ',') {
            ++values;
        } else if ((character == ']' || character == '}') && depth > 0) {
            --depth;
        }
        if (depth > maximumSettingsDepth) {
            return SettingsDecodingError{"nested too deep"};
        }
        if (values > maximumSettingsValues) {
            return SettingsDecodingError{"too many values"};
        }
    }
    return std::nullopt;
}

// Reading. Each overload of `read` takes a value of the type it fills, or throws.

void read(const Json& json, bool& value) {
    if (!json.is_boolean()) {
        throw WrongValue("not a Boolean");
    }
    value = json.get<bool>();
}

void read(const Json& json, std::string& value) {
    if (!json.is_string()) {
        throw WrongValue("not a string");
    }
    value = json.get_ref<const std::string&>();
}

template <std::integral Integer>
std::optional<Integer> exactInteger(double number) {
    // The bound is one past the maximum because that one, a power of two, is a double; the maximum itself may not be.
    constexpr auto lower = static_cast<double>(std::numeric_limits<Integer>::min());
    const double upper = std::ldexp(1.0, std::numeric_limits<Integer>::digits);
    if (number >= lower && number < upper && std::trunc(number) == number) {
        return static_cast<Integer>(number);
    }
    return std::nullopt;
}

template <std::integral Integer>
void read(const Json& json, Integer& value) {
    if (json.is_number_unsigned()) {
        const auto number = json.get<std::uint64_t>();
        if (std::in_range<Integer>(number)) {
            value = static_cast<Integer>(number);
            return;
        }
    } else if (json.is_number_integer()) {
        const auto number = json.get<std::int64_t>();
        if (std::in_range<Integer>(number)) {
            value = static_cast<Integer>(number);
            return;
        }
    } else if (json.is_number_float()) {
        if (const auto number = exactInteger<Integer>(json.get<double>())) {
            value = *number;
            return;
        }
    } else {
        throw WrongValue("not a number");
    }
    throw WrongValue("not an integer in range");
}

const Json& object(const Json& json) {
    if (!json.is_object()) {
        throw WrongValue("not an object");
    }
    return json;
}

template <typename Element>
void read(const Json& json, std::vector<Element>& value);
void read(const Json& json, HotKeyBinding& binding);
void read(const Json& json, CommandHotkeys& hotkeys);
void read(const Json& json, WindowGridSelection& selection);
void read(const Json& json, CustomWindowLayout& layout);

/// Reads `json`, naming where it stands in what it throws.
template <typename Value>
void readAt(const std::string& place, const Json& json, Value& value) {
    try {
        read(json, value);
    } catch (const WrongValue& error) {
        throw WrongValue(place + ": " + error.what());
    }
}

/// Leaves `value` as it is when the member is absent or null.
template <typename Value>
void readOptional(const Json& json, const char* key, Value& value) {
    const auto member = json.find(key);
    if (member != json.end() && !member->is_null()) {
        readAt(key, *member, value);
    }
}

template <typename Value>
void readRequired(const Json& json, const char* key, Value& value) {
    const auto member = json.find(key);
    if (member == json.end()) {
        throw WrongValue(std::string("no ") + key);
    }
    readAt(key, *member, value);
}

template <typename Element>
void read(const Json& json, std::vector<Element>& value) {
    if (!json.is_array()) {
        throw WrongValue("not an array");
    }
    value.resize(json.size());
    for (std::size_t i = 0; i < json.size(); ++i) {
        readAt(std::to_string(i), json[i], value[i]);
    }
}

void read(const Json& json, HotKeyBinding& binding) {
    readRequired(object(json), "keyCode", binding.keyCode);
    readRequired(json, "modifiers", binding.modifiers);
    readRequired(json, "display", binding.display);
}

void read(const Json& json, CommandHotkeys& hotkeys) {
    for (const auto& [identifier, binding] : object(json).items()) {
        readAt(identifier, binding, hotkeys[identifier]);
    }
}

void read(const Json& json, WindowGridSelection& selection) {
    readRequired(object(json), "columns", selection.columns);
    readRequired(json, "rows", selection.rows);
    readRequired(json, "column", selection.column);
    readRequired(json, "row", selection.row);
    readRequired(json, "columnSpan", selection.columnSpan);
    readRequired(json, "rowSpan", selection.rowSpan);
}

void read(const Json& json, CustomWindowLayout& layout) {
    readRequired(object(json), "id", layout.id);
    readRequired(json, "name", layout.name);
    readRequired(json, "selection", layout.selection);
    layout.selection = normalized(layout.selection);
    readOptional(json, "isAvailableForDragging", layout.isAvailableForDragging);
}

StoredSettings readSettings(const Json& json) {
    StoredSettings stored;
    readOptional(object(json), "customWindowLayouts", stored.customWindowLayouts);
    readOptional(json, "disabledCommandHotkeys", stored.disabledCommandHotkeys);
    readOptional(json, "commandHotkeys", stored.commandHotkeys);
    readOptional(json, "windowGap", stored.windowGap);
    readOptional(json, "dragEnabledBuiltInWindowLayoutIDs", stored.dragEnabledBuiltInWindowLayoutIDs);
    readOptional(json, "hasCompletedOnboarding", stored.hasCompletedOnboarding);
    return stored;
}

// Writing.

bool isDefaultShortcut(const CommandIdentifier& identifier, const HotKeyBinding& binding) {
    const auto found = defaultCommandHotkeys().find(identifier);
    return found != defaultCommandHotkeys().end() && isSameShortcut(found->second, binding);
}

Json changedHotkeys(const CommandHotkeys& hotkeys) {
    Json json = Json::object();
    for (const auto& [identifier, binding] : hotkeys) {
        if (!isDefaultShortcut(identifier, binding)) {
            json[identifier] = {
                {"keyCode", binding.keyCode}, {"modifiers", binding.modifiers}, {"display", binding.display}};
        }
    }
    return json;
}

Json layoutObjects(const std::vector<CustomWindowLayout>& layouts) {
    Json json = Json::array();
    for (const CustomWindowLayout& layout : layouts) {
        const WindowGridSelection& selection = layout.selection;
        json.push_back({{"id", layout.id},
                        {"name", layout.name},
                        {"selection",
                         {{"columns", selection.columns},
                          {"rows", selection.rows},
                          {"column", selection.column},
                          {"row", selection.row},
                          {"columnSpan", selection.columnSpan},
                          {"rowSpan", selection.rowSpan}}},
                        {"isAvailableForDragging", layout.isAvailableForDragging}});
    }
    return json;
}

} // namespace

std::variant<AppSettings, SettingsDecodingError> decodeSettings(std::string_view bytes) {
    if (auto error = exceededLimit(bytes)) {
        return *std::move(error);
    }
    try {
        return AppSettings(readSettings(Json::parse(bytes)));
    } catch (const std::exception& error) {
        return SettingsDecodingError{error.what()};
    }
}

std::string encodeSettings(const AppSettings& settings) {
    const Json json = {
        {"commandHotkeys", changedHotkeys(settings.commandHotkeys)},
        {"customWindowLayouts", layoutObjects(settings.customWindowLayouts)},
        {"disabledCommandHotkeys", settings.disabledCommandHotkeys},
        {"dragEnabledBuiltInWindowLayoutIDs", settings.dragEnabledBuiltInWindowLayoutIDs},
        {"hasCompletedOnboarding", settings.hasCompletedOnboarding},
        {"windowGap", settings.windowGap},
    };
    constexpr int indentation = 2;
    return json.dump(indentation, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace brisk
