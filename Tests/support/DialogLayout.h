// DialogLayout.h: whether dialogs show all that they say, in every language, and answer the keyboard.
#pragma once

#include <afxwin.h>

#include <string>
#include <vector>

// A language that a template is in, or English made 40 per cent longer, as a translation may be.
enum class Wording { English, French, Longer };

constexpr Wording allWordings[] = {Wording::English, Wording::French, Wording::Longer};

// The ids of the dialog templates of a module.
std::vector<int> FindDialogTemplates(HMODULE module);

// The dialog of a template as it is, without the code that fills it, visible and in front. A child
// dialog, such as a page, lies in a dialog that holds nothing else. Throws std::runtime_error where
// the module has no such template in that wording, or one that is not extended.
class TemplateDialog
{
public:
    TemplateDialog(HMODULE module, int id, Wording wording);
    ~TemplateDialog();
    TemplateDialog(const TemplateDialog&) = delete;
    TemplateDialog& operator=(const TemplateDialog&) = delete;

    CDialog& Get() { return dialog; }
    CWnd& GetTop() { return top.GetSafeHwnd() ? static_cast<CWnd&>(top) : dialog; }

private:
    CDialog top;  // without a window where the dialog is no child
    CDialog dialog;
};

// What a user would not see, one sentence each: texts, and lines of combo boxes, that are clipped,
// controls that lie over one another or outside of their dialog. Child dialogs are looked at as well.
std::vector<std::string> FindLayoutFaults(HWND dialog);

// What a user without a mouse would miss, one sentence each: controls that Tab does not come to,
// from the first one round to it again and back by Shift+Tab; two that have one mnemonic, or one
// that a dialog around has (taken: its letters). Types real keys.
std::vector<std::string> FindKeyboardFaults(HWND dialog, const std::wstring& taken = {});
