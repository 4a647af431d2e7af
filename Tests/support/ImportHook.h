// ImportHook.h: plays faults of the system by replacing a function that one of our DLLs imports.
#pragma once

#include <windows.h>

// For the life of the object, calls that `module` makes to `function` of `library` reach the
// replacement, which must have the function's type and calling convention. Other modules are not
// touched. Throws std::runtime_error when the module does not import the function: a hook that
// hooks nothing would let a test pass blindly. Hooks on one function nest, last in first out.
class ImportHook
{
public:
    template <class Function>
    ImportHook(const wchar_t* module, const char* library, const char* function,
               Function* replacement)
        : ImportHook(module, library, function, reinterpret_cast<void*>(replacement), nullptr)
    {}
    ~ImportHook();
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;

    // What the replacement may call to do the real thing.
    template <class Function>
    Function* Original() const
    {
        return reinterpret_cast<Function*>(original);
    }

private:
    ImportHook(const wchar_t* module, const char* library, const char* function, void* replacement,
               void*);

    void** slot;  // in the module's import address table
    void* original;
};
