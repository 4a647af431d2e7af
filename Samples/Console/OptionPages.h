// OptionPages.h: the pages of the program's options.
#pragma once

#include "ConsoleChoices.h"

#include <YProfileTlsVersions.h>
#include <controls/YCheckListBox.h>
#include <dialogs/YPropertyTreePage.h>

#include <memory>

class ConsoleSettings;
class YTlsVersionsPlugin;

// Fills its controls from the choices and takes them over when its user leaves it. A change of a
// control enables the Apply button.
class OptionPage : public YPropertyTreePage
{
public:
    OptionPage(unsigned resource, ConsoleChoices& edited)
        : YPropertyTreePage(resource), choices(edited)
    {}

protected:
    virtual void Exchange(CDataExchange& exchange) = 0;
    void DoDataExchange(CDataExchange* exchange) final;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    void OnOK() override {}  // of the dialog, not of the page
    void OnCancel() override {}

    ConsoleChoices& choices;  // the dialog's

private:
    bool isFilling = false;
};

class ViewPage : public OptionPage
{
public:
    explicit ViewPage(ConsoleChoices& edited);

    void Lock(unsigned lines) { lockedLines = lines; }  // by the administrator

protected:
    BOOL OnInitDialog() override;
    void Exchange(CDataExchange& exchange) override;

private:
    unsigned lockedLines = 0;  // 0: the user chooses
};

class ColorsPage : public OptionPage
{
public:
    explicit ColorsPage(ConsoleChoices& edited);

protected:
    void Exchange(CDataExchange& exchange) override;
    afx_msg void OnChoose(UINT id);
    afx_msg void OnUsual();
    afx_msg HBRUSH OnCtlColor(CDC* dc, CWnd* window, UINT kind);
    DECLARE_MESSAGE_MAP()
};

class FontPage : public OptionPage
{
public:
    explicit FontPage(ConsoleChoices& edited);

protected:
    void Exchange(CDataExchange& exchange) override;
    afx_msg void OnChoose();
    afx_msg void OnUsual();
    DECLARE_MESSAGE_MAP()

private:
    void Show();

    std::unique_ptr<CFont> sample;
};

class SearchPage : public OptionPage
{
public:
    explicit SearchPage(ConsoleChoices& edited);

protected:
    void Exchange(CDataExchange& exchange) override;
};

class ConnectionPage : public OptionPage
{
public:
    explicit ConnectionPage(ConsoleChoices& edited);

protected:
    void Exchange(CDataExchange& exchange) override;
};

class TlsPage : public OptionPage
{
public:
    explicit TlsPage(ConsoleChoices& edited);

    BOOL OnKillActive() override;

protected:
    BOOL OnInitDialog() override;
    void Exchange(CDataExchange&) override {}

private:
    YProfileTlsVersions versions{L""};  // read and written as a choice
    YTlsVersionsPlugin* plugin = nullptr;  // deletes itself with its window
};

class CertificatePage : public OptionPage
{
public:
    CertificatePage(ConsoleChoices& edited, ConsoleSettings& remembered);

protected:
    void Exchange(CDataExchange& exchange) override;
    afx_msg void OnCreateCertificate();
    afx_msg void OnBrowse();
    afx_msg void OnPathLeft();
    DECLARE_MESSAGE_MAP()

private:
    void ShowFile(const wchar_t* file);

    ConsoleSettings& settings;  // borrowed
};

class LogPage : public OptionPage
{
public:
    explicit LogPage(ConsoleChoices& edited);

protected:
    BOOL OnInitDialog() override;
    void Exchange(CDataExchange& exchange) override;
    afx_msg void OnBrowse();
    DECLARE_MESSAGE_MAP()

private:
    static void OnKindsChange();

    static LogPage*
        shown;  // one at a time: the list of kinds tells no more than that it has changed
    YCheckListBox kinds;
};

class FilesPage : public OptionPage
{
public:
    explicit FilesPage(ConsoleChoices& edited);

protected:
    BOOL OnInitDialog() override;
    void Exchange(CDataExchange& exchange) override;
};

class RecentPage : public OptionPage
{
public:
    explicit RecentPage(ConsoleChoices& edited);

    void OfferForgetting(ConsoleSettings& remembered) { settings = &remembered; }  // borrowed

protected:
    void Exchange(CDataExchange& exchange) override;
    afx_msg void OnForget();
    DECLARE_MESSAGE_MAP()

private:
    ConsoleSettings* settings = nullptr;
};
