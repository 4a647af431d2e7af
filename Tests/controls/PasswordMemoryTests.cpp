// What is left of a password when its field is gone: in the field, in our memory, in the process.
#include "Kit.h"
#include "autocomplete/LineEditKit.h"
#include "support/CaseName.h"
#include "support/ImportHook.h"
#include "support/LeakCheck.h"
#include "support/MemorySearch.h"

#include <commctrl.h>
#include <controls/LinkedPasswordEdits.h>
#include <controls/PasswordEdit.h>
#include <controls/YPasswordEdit.h>
#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>

namespace {

constexpr DWORD passwordStyle = ES_PASSWORD | ES_AUTOHSCROLL;

// What the edit holds when its window goes: its text after all handlers of WM_DESTROY.
class LastText
{
public:
    explicit LastText(HWND edit)
    {
        ::SetWindowSubclass(edit, &Watch, 0, reinterpret_cast<DWORD_PTR>(this));
    }
    LastText(const LastText&) = delete;
    LastText& operator=(const LastText&) = delete;

    std::wstring text = L"never";

private:
    static LRESULT CALLBACK Watch(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                  DWORD_PTR self)
    {
        if (message == WM_NCDESTROY) {
            reinterpret_cast<LastText*>(self)->text = GetWholeText(window);
            ::RemoveWindowSubclass(window, &Watch, 0);
        }
        return ::DefSubclassProc(window, message, wParam, lParam);
    }
};

class PasswordFieldTest : public ControlTest
{};

TEST_F(PasswordFieldTest, HoldsAsterisksWhenItGoes)
{
    const struct
    {
        void (*type)();
        std::size_t left;
    } cases[] = {{[] { Type("ABC"); }, 3},
                 {[] {}, 32},
                 {[] { Type("AB"), TypeKey(VK_BACK), TypeKey(VK_BACK); }, 32},
                 {[] { TypeText(std::wstring(50, L'W')); }, 50}};
    for (const bool objectGoesFirst : {false, true}) {
        for (const auto& [type, left] : cases) {
            auto edit = std::make_unique<PasswordEdit>(nullptr);
            auto other = std::make_unique<YPasswordEdit>();
            for (CEdit* const field :
                 {static_cast<CEdit*>(edit.get()), static_cast<CEdit*>(other.get())}) {
                const HWND handle = host.Add(L"EDIT", 0, passwordStyle);
                ASSERT_TRUE(field->SubclassWindow(handle));
                const LastText last(handle);
                ::SetFocus(handle);
                type();
                if (!objectGoesFirst) {
                    ::DestroyWindow(handle);
                } else if (field == edit.get()) {
                    edit.reset();
                } else {
                    other.reset();
                }
                EXPECT_FALSE(::IsWindow(handle));
                EXPECT_EQ(last.text, std::wstring(left, L'*'));
            }
        }
    }
}

// A password that is computed, and so stands nowhere but where it was typed.
class Secret
{
public:
    static constexpr unsigned length = 12;  // characters

    explicit Secret(unsigned number) : seed(number) {}

    // Behind some other text: what gives memory back writes over the beginning of it.
    void TypeInto(HWND edit) const
    {
        ::SetFocus(edit);
        TypeText(L"password");
        for (unsigned i = 0; i < length; ++i) {
            const wchar_t character = CharacterAt(i);
            TypeText({&character, 1});
        }
    }
    bool IsAt(const volatile wchar_t* text) const
    {
        for (unsigned i = 0; i < length; ++i) {
            if (text[i] != CharacterAt(i)) {
                return false;
            }
        }
        return true;
    }
    unsigned CountInProcess() const
    {
        return CountInMemory<wchar_t>(length,
                                      [this](const volatile wchar_t* text) { return IsAt(text); });
    }
    wchar_t CharacterAt(unsigned index) const
    {
        return static_cast<wchar_t>(0x0410 + (seed + index) * 37 % 61);
    }

private:
    unsigned seed;
};

// While it lives, looks into every block that anything of ours gives back, strings of the framework
// included.
class FreedBlocks
{
public:
    explicit FreedBlocks(const Secret& soughtSecret)
    {
        original = hook.Original<void(void*)>();
        sought = &soughtSecret;
        found = 0;
    }
    static unsigned Count() { return found; }  // of those with the secret in them

private:
    static void Look(void* block)
    {
        const std::size_t units = block ? ::_msize(block) / sizeof(wchar_t) : 0;
        const auto* const text = static_cast<const wchar_t*>(block);
        for (std::size_t i = 0; i + Secret::length <= units; ++i) {
            found += sought->IsAt(text + i);
        }
        original(block);
    }

    static inline const Secret* sought;
    static inline unsigned found;
    static inline void (*original)(void*);
    const ImportHook hook{L"libstdc++-6.dll", "msvcrt.dll", "free", &Look};
};

class PasswordMemoryTest : public ControlTest
{
protected:
    // How often a secret stands in the process that was typed into a field which has gone.
    unsigned CountAfter(const Secret& secret, CEdit& field, void (*typeMore)(HWND edit))
    {
        const HWND handle = host.Add(L"EDIT", 0, passwordStyle);
        EXPECT_TRUE(field.SubclassWindow(handle));
        secret.TypeInto(handle);
        EXPECT_GT(secret.CountInProcess(), 0u);  // the search finds what is there
        typeMore(handle);
        ::DestroyWindow(handle);
        return secret.CountInProcess();
    }
};

TEST_F(PasswordMemoryTest, BlocksThatAreGivenBackAreSearched)
{
    const Secret secret(1);
    const FreedBlocks freed(secret);
    std::wstring text;
    for (unsigned i = 0; i < Secret::length; ++i) {
        text += secret.CharacterAt(i);
    }
    {
        const CString copy(text.c_str());
    }
    EXPECT_EQ(FreedBlocks::Count(), 1u);
}

// Also in the system's edit, but for what its growth may leave behind.
TEST_F(PasswordMemoryTest, NothingStaysOfWhatWeHandle)
{
    const struct
    {
        const char* name;
        void (*typeMore)(HWND edit);
    } cases[] = {
        {"typed", [](HWND) {}},
        {"with a control character", [](HWND) { Press(VK_CONTROL, 'B'); }},
        {"deleted", [](HWND edit) { ::SendMessageW(edit, EM_SETSEL, 0, -1), TypeKey(VK_BACK); }},
        {"typed over", [](HWND edit) { ::SendMessageW(edit, EM_SETSEL, 0, -1), Type("X"); }},
        {"replaced by a control character",
         [](HWND edit) { ::SendMessageW(edit, EM_SETSEL, 0, -1), Press(VK_CONTROL, 'B'); }},
    };
    unsigned number = 100;
    for (const auto& [name, typeMore] : cases) {
        SCOPED_TRACE(name);
        LinkedPasswordEdits linked(nullptr);
        YPasswordEdit control;
        for (CEdit* const field :
             {static_cast<CEdit*>(&linked.password), static_cast<CEdit*>(&control)}) {
            const Secret secret(++number);
            const FreedBlocks freed(secret);
            EXPECT_EQ(CountAfter(secret, *field, typeMore), 0u);
            EXPECT_EQ(FreedBlocks::Count(), 0u);
        }
    }
}

}  // namespace
