#pragma once

#include "settings/settings_store.h"
#include "ui/hot_key_recorder_view.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <string>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace brisk {

class TextLabel;
class WindowGridSelectionView;

/// The form in which one custom layout is edited. It changes nothing by itself: what it holds is read when the user
/// saves.
class CustomWindowLayoutEditorView final : public QWidget {
    Q_OBJECT

public:
    CustomWindowLayoutEditorView(const CustomWindowLayout& layout, std::optional<HotKeyBinding> binding,
                                 std::function<std::optional<std::string>(const HotKeyBinding&)> validationMessage,
                                 const HotKeyRecorderServices& services, QWidget* parent = nullptr);

    /// The text as typed.
    std::string name() const;
    const WindowGridSelection& selection() const;
    bool isAvailableForDragging() const;
    const std::optional<HotKeyBinding>& binding() const;

private:
    void buildLayout();
    void gridSizeChanged();

    QLineEdit* nameField_;
    QComboBox* columnsPopup_;
    QComboBox* rowsPopup_;
    TextLabel* selectionLabel_;
    QCheckBox* dragCheckbox_;
    WindowGridSelectionView* gridView_;
    HotKeyRecorderView* shortcutRecorder_;
};

/// Lets the user edit `existing`, or a new layout where there is none, in a dialog over `parent`, and returns once it
/// is closed: true when the layout has been saved in `store`. The window may go meanwhile, `store` must not.
bool editCustomLayout(SettingsStore& store, const HotKeyRecorderServices& services,
                      const std::optional<CustomWindowLayout>& existing, QWidget* parent);

} // namespace brisk
