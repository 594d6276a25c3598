#include "ui/menu_view.h"

#include <QAction>

#include <array>
#include <optional>
#include <utility>

namespace brisk {

namespace {

/// The characters by which key equivalents name keys that type none, or nothing visible.
std::optional<Qt::Key> namedKey(char16_t character) {
    constexpr char16_t firstFunctionKey = 0xF704;
    constexpr char16_t lastFunctionKey = 0xF726;
    if (character >= firstFunctionKey && character <= lastFunctionKey) {
        return static_cast<Qt::Key>(Qt::Key_F1 + (character - firstFunctionKey));
    }
    switch (character) {
    case 0xF700:
        return Qt::Key_Up;
    case 0xF701:
        return Qt::Key_Down;
    case 0xF702:
        return Qt::Key_Left;
    case 0xF703:
        return Qt::Key_Right;
    case 0xF727:
        return Qt::Key_Insert;
    case 0xF728:
        return Qt::Key_Delete;
    case 0xF729:
        return Qt::Key_Home;
    case 0xF72B:
        return Qt::Key_End;
    case 0xF72C:
        return Qt::Key_PageUp;
    case 0xF72D:
        return Qt::Key_PageDown;
    case u'\b':
        return Qt::Key_Backspace;
    case u'\r':
        return Qt::Key_Return;
    case 0x03:
        return Qt::Key_Enter;
    case u'\t':
        return Qt::Key_Tab;
    default:
        return std::nullopt;
    }
}

std::optional<Qt::Key> keyOf(const std::string& keyEquivalent) {
    const QString characters = QString::fromStdString(keyEquivalent);
    if (characters.size() != 1) {
        return std::nullopt;
    }
    if (const auto key = namedKey(characters.front().unicode())) {
        return key;
    }
    // Qt names a letter's key by its capital.
    const QChar character = characters.front().toUpper();
    return character.isPrint() ? std::optional(static_cast<Qt::Key>(character.unicode())) : std::nullopt;
}

Qt::KeyboardModifiers modifiersOf(const MenuItem& item) {
    const bool isSystemWide = item.action == MenuAction::runWindowCommand;
    const std::array<std::pair<NSEventModifierFlags, Qt::KeyboardModifier>, 4> table{{
        {NSEventModifierFlagControl, Qt::ControlModifier},
        {NSEventModifierFlagOption, Qt::AltModifier},
        {NSEventModifierFlagShift, Qt::ShiftModifier},
        {NSEventModifierFlagCommand, isSystemWide ? Qt::MetaModifier : Qt::ControlModifier},
    }};
    Qt::KeyboardModifiers modifiers;
    for (const auto& [flag, modifier] : table) {
        modifiers.setFlag(modifier, modifiers.testFlag(modifier) || (item.keyEquivalentModifierMask & flag) != 0);
    }
    return modifiers;
}

/// Not deleted at once: the action, or the submenu, may be the one whose signal we are in.
void removeItems(QMenu& menu) {
    for (QAction* action : menu.actions()) {
        menu.removeAction(action);
        QObject* const item = action->menu() != nullptr ? static_cast<QObject*>(action->menu()) : action;
        item->deleteLater();
    }
}

} // namespace

QKeySequence shortcutOf(const MenuItem& item) {
    const auto key = keyOf(item.keyEquivalent);
    return key ? QKeySequence(QKeyCombination(modifiersOf(item), *key)) : QKeySequence();
}

QString menuText(const std::string& title) {
    // An ampersand alone underlines the letter after it, a tab begins the column of the shortcuts.
    return QString::fromStdString(title).replace(u'&', QStringLiteral("&&")).replace(u'\t', u' ');
}

MenuView::MenuView(Shortcuts shortcuts, std::function<void(const MenuItem&)> onChosen)
    : shortcuts_(shortcuts), onChosen_(std::move(onChosen)) {}

void MenuView::setContents(const Menu& contents) {
    // What has not changed stays: a panel may be showing it, and answers with the items it knows.
    if (contents == contents_) {
        return;
    }
    contents_ = contents;
    removeItems(menu_);
    menu_.setTitle(menuText(contents.title));
    addItems(contents.items, menu_);
}

void MenuView::addItems(const std::vector<MenuItem>& items, QMenu& menu) {
    for (const MenuItem& item : items) {
        if (item.submenu.empty()) {
            addItem(item, menu);
        } else {
            addItems(item.submenu, *menu.addMenu(menuText(item.title)));
        }
    }
}

void MenuView::addItem(const MenuItem& item, QMenu& menu) {
    auto* const action = new QAction(menuText(item.title), &menu);
    action->setSeparator(item.isSeparator);
    action->setEnabled(item.isEnabled);
    // By its title alone, Qt would move "Quit" or "About" into another menu on some platforms.
    action->setMenuRole(QAction::NoRole);
    action->setShortcut(shortcutOf(item));
    action->setShortcutVisibleInContextMenu(true);
    // No widget ever has the focus inside a menu, so this takes a shortcut out of use.
    action->setShortcutContext(shortcuts_ == Shortcuts::active ? Qt::WindowShortcut : Qt::WidgetShortcut);
    QObject::connect(
        action, &QAction::triggered, this, [this, item] { onChosen_(item); }, Qt::QueuedConnection);
    menu.addAction(action);
}

} // namespace brisk
