#include "tour/scenes.h"

#include <stdexcept>
#include <vector>

namespace brisk::tour {

using desktop::Key;
using desktop::PixelRect;

namespace {

struct Command {
    const char* name;
    Key key;
    PixelRect frame;
};

std::vector<Command> commands() {
    return {
        {"left-half", Key::left, cells(2, 0, 1, 1, 0, 1)},
        {"left-two-thirds", Key::left, cells(3, 0, 2, 1, 0, 1)},
        {"left-third", Key::left, cells(3, 0, 1, 1, 0, 1)},
        {"right-half", Key::right, cells(2, 1, 2, 1, 0, 1)},
        {"top-half", Key::up, cells(1, 0, 1, 2, 0, 1)},
        {"bottom-half", Key::down, cells(1, 0, 1, 2, 1, 2)},
        {"maximize", Key::returnKey, cells(1, 0, 1, 1, 0, 1)},
        {"center", Key::c, centered()},
        {"top-left", Key::u, cells(2, 0, 1, 2, 0, 1)},
        {"top-right", Key::i, cells(2, 1, 2, 2, 0, 1)},
        {"bottom-left", Key::j, cells(2, 0, 1, 2, 1, 2)},
        {"bottom-right", Key::k, cells(2, 1, 2, 2, 1, 2)},
        {"custom-wide-left", Key::digit1, cells(4, 0, 3, 2, 0, 2)},
        {"custom-reading", Key::digit2, cells(4, 1, 3, 4, 1, 3)},
    };
}

} // namespace

void playCommands(Stage& stage) {
    for (const Actor& actor : stage.actors()) {
        stage.activate(actor);
        const auto original = stage.desktop.visibleFrame(actor.window);
        if (!original) {
            throw std::runtime_error(actor.name + " is gone");
        }
        const auto play = [&](const char* name, Key key, const PixelRect& expected) {
            stage.user.press(key, {Key::leftControl, Key::leftAlt});
            stage.expectFrame(actor, name, expected);
        };
        for (const Command& command : commands()) {
            play(command.name, command.key, allowedByHints(stage.desktop, actor.window, command.frame));
        }
        play("restore", Key::backspace, *original);
    }
}

} // namespace brisk::tour
