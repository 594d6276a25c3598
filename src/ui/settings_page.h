#pragma once

#include "app/settings_row.h"

#include <QScrollArea>
#include <QVBoxLayout>

#include <initializer_list>

namespace brisk {

/// Several controls as the accessory of one row.
QWidget* accessoryGroup(std::initializer_list<QWidget*> controls);

/// A plain text as accessory.
QWidget* accessoryText(const std::string& text);

/// A titled list of rows in a page.
class SettingsSection final : public QWidget {
    Q_OBJECT

public:
    SettingsSection(const QString& title, QWidget* parent);
    /// Takes the accessory over.
    void addRow(const SettingsRow& row, QWidget* accessory);

private:
    QVBoxLayout* rows_;
    bool hasRows_ = false;
};

/// A pane of headed sections, which scrolls when it is higher than the window.
class SettingsPage final : public QScrollArea {
    Q_OBJECT

public:
    explicit SettingsPage(const PaneHeading& heading);
    SettingsSection& addSection(const QString& title);

private:
    QVBoxLayout* stack_;
};

} // namespace brisk
