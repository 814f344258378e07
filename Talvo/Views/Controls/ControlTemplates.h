#pragma once

#include <QQmlEngine>

#include <QtQuickTemplates2/private/qquickabstractbutton_p.h>
#include <QtQuickTemplates2/private/qquickbutton_p.h>
#include <QtQuickTemplates2/private/qquickcombobox_p.h>
#include <QtQuickTemplates2/private/qquickcontainer_p.h>
#include <QtQuickTemplates2/private/qquickcontrol_p.h>
#include <QtQuickTemplates2/private/qquickdialog_p.h>
#include <QtQuickTemplates2/private/qquickitemdelegate_p.h>
#include <QtQuickTemplates2/private/qquickmenu_p.h>
#include <QtQuickTemplates2/private/qquickmenuitem_p.h>
#include <QtQuickTemplates2/private/qquickoverlay_p.h>
#include <QtQuickTemplates2/private/qquickpopup_p.h>
#include <QtQuickTemplates2/private/qquickpopupanchors_p.h>
#include <QtQuickTemplates2/private/qquickscrollbar_p.h>
#include <QtQuickTemplates2/private/qquicksplitview_p.h>
#include <QtQuickTemplates2/private/qquicktextarea_p.h>
#include <QtQuickTemplates2/private/qquicktextfield_p.h>
#include <QtQuickTemplates2/private/qquicktooltip_p.h>

/// The toolkit's controls, as far as the views use them, registered under their own names.
///
/// To import its own module is to register all of its types, five times as many, and that took a
/// quarter of the time of reading the views at each start. Bases that no view names stand here too:
/// the QML compiler has to know them, and the engine knows the properties that a base got in a
/// later version only where the base is in the same module.
namespace Talvo::ControlTemplates {

/// A button that can look like anything.
struct AbstractButton
{
    Q_GADGET
    QML_FOREIGN(QQuickAbstractButton)
    QML_NAMED_ELEMENT(AbstractButton)
};

/// A button.
struct Button
{
    Q_GADGET
    QML_FOREIGN(QQuickButton)
    QML_NAMED_ELEMENT(Button)
};

/// A choice of one of several.
struct ComboBox
{
    Q_GADGET
    QML_FOREIGN(QQuickComboBox)
    QML_NAMED_ELEMENT(ComboBox)
};

/// Base of SplitView.
struct Container
{
    Q_GADGET
    QML_FOREIGN(QQuickContainer)
    QML_NAMED_ELEMENT(Container)
};

/// Base of the controls.
struct Control
{
    Q_GADGET
    QML_FOREIGN(QQuickControl)
    QML_NAMED_ELEMENT(Control)
};

/// A popup that is accepted or rejected.
struct Dialog
{
    Q_GADGET
    QML_FOREIGN(QQuickDialog)
    QML_NAMED_ELEMENT(Dialog)
};

/// Base of all that is drawn.
struct Item
{
    Q_GADGET
    QML_FOREIGN(QQuickItem)
    QML_ANONYMOUS
};

/// A row of a list.
struct ItemDelegate
{
    Q_GADGET
    QML_FOREIGN(QQuickItemDelegate)
    QML_NAMED_ELEMENT(ItemDelegate)
};

/// A context menu.
struct Menu
{
    Q_GADGET
    QML_FOREIGN(QQuickMenu)
    QML_NAMED_ELEMENT(Menu)
};

/// An entry of a menu.
struct MenuItem
{
    Q_GADGET
    QML_FOREIGN(QQuickMenuItem)
    QML_NAMED_ELEMENT(MenuItem)
};

/// Where a window's popups are.
struct Overlay
{
    Q_GADGET
    QML_FOREIGN(QQuickOverlay)
    QML_NAMED_ELEMENT(Overlay)
    QML_UNCREATABLE("A window has one.")
};

/// What opens over a window.
struct Popup
{
    Q_GADGET
    QML_FOREIGN(QQuickPopup)
    QML_NAMED_ELEMENT(Popup)
};

/// Where a popup opens.
struct PopupAnchors
{
    Q_GADGET
    QML_FOREIGN(QQuickPopupAnchors)
    QML_ANONYMOUS
};

/// A scroll bar.
struct ScrollBar
{
    Q_GADGET
    QML_FOREIGN(QQuickScrollBar)
    QML_NAMED_ELEMENT(ScrollBar)
};

/// What is dragged between two views. No view names it: SplitView asks for it by itself, to say
/// whether it is hovered or pressed.
struct SplitHandle
{
    Q_GADGET
    QML_FOREIGN(QQuickSplitHandleAttached)
    QML_NAMED_ELEMENT(SplitHandle)
    QML_UNCREATABLE("A split view has them.")
};

/// Views whose widths the user divides.
struct SplitView
{
    Q_GADGET
    QML_FOREIGN(QQuickSplitView)
    QML_NAMED_ELEMENT(SplitView)
};

/// Base of TextArea.
struct ToolkitTextArea
{
    Q_GADGET
    QML_FOREIGN(QQuickTextArea)
    QML_ANONYMOUS
};

/// Base of that.
struct TextEdit
{
    Q_GADGET
    QML_FOREIGN(QQuickTextEdit)
    QML_ANONYMOUS
};

/// Base of TextField.
struct ToolkitTextField
{
    Q_GADGET
    QML_FOREIGN(QQuickTextField)
    QML_ANONYMOUS
};

/// Base of that.
struct TextInput
{
    Q_GADGET
    QML_FOREIGN(QQuickTextInput)
    QML_ANONYMOUS
};

/// A hint that appears by itself.
struct ToolTip
{
    Q_GADGET
    QML_FOREIGN(QQuickToolTip)
    QML_NAMED_ELEMENT(ToolTip)
};

} // namespace Talvo::ControlTemplates
