#include "FrameworkState.h"

#include <utility>

// An exchange between a window and its controls, for as long as it lasts. Message boxes of one may
// let another window begin its own.
class DataExchangeInProgress
{
public:
    explicit DataExchangeInProgress(HWND exchanging)
        : window(exchanging), outer(std::exchange(GetThreadState().exchange, this))
    {}
    ~DataExchangeInProgress() { GetThreadState().exchange = outer; }
    DataExchangeInProgress(const DataExchangeInProgress&) = delete;
    DataExchangeInProgress& operator=(const DataExchangeInProgress&) = delete;

    HWND GetWindow() const { return window; }
    const DataExchangeInProgress* GetOuter() const { return outer; }

private:
    HWND window;
    DataExchangeInProgress* outer;
};

bool IsExchangingData(HWND window)
{
    const DataExchangeInProgress* exchange = GetThreadState().exchange;
    while (exchange != nullptr && exchange->GetWindow() != window) {
        exchange = exchange->GetOuter();
    }
    return exchange != nullptr;
}

BOOL CWnd::UpdateData(BOOL bSaveAndValidate)
{
    ASSERT(m_hWnd != nullptr);
    if (IsExchangingData(m_hWnd)) {
        return FALSE;
    }
    const DataExchangeInProgress exchange(m_hWnd);
    CDataExchange parameters(this, bSaveAndValidate);
    try {
        DoDataExchange(&parameters);
        return TRUE;
    } catch (CUserException* refusal) {
        refusal->Delete();
    } catch (...) {
        // A fault, not a refusal; the caller is asked to keep the dialog open all the same.
        AnswerForCurrentException(*GetCurrentMessage());
    }
    return FALSE;
}

HWND CDataExchange::PrepareCtrl(int nIDC)
{
    ASSERT(nIDC != 0 && nIDC != -1);  // a control that exchanges data has an id of its own
    const HWND control = ::GetDlgItem(m_pDlgWnd->GetSafeHwnd(), nIDC);
    if (control == nullptr) {
        ::AfxThrowNotSupportedException();
    }
    m_idLastControl = nIDC;
    m_bEditLastControl = FALSE;
    return control;
}

HWND CDataExchange::PrepareEditCtrl(int nIDC)
{
    const HWND control = PrepareCtrl(nIDC);
    m_bEditLastControl = TRUE;
    return control;
}

void CDataExchange::Fail()
{
    if (m_bSaveAndValidate && m_idLastControl != 0) {
        const HWND control = ::GetDlgItem(m_pDlgWnd->GetSafeHwnd(), m_idLastControl);
        ::SetFocus(control);
        if (m_bEditLastControl) {
            ::SendMessageW(control, EM_SETSEL, 0, -1);
        }
    }
    ::AfxThrowUserException();
}
