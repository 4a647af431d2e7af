// Doomed.h: shows who writes into an object after its end.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <memory>

// An object for new and delete whose memory is kept, marked, when it is deleted, until the next one is
// deleted or Bury.
template <class Object>
class Doomed : public Object
{
public:
    using Object::Object;

    static void operator delete(void* memory, std::size_t size)
    {
        std::memset(memory, mark, size);
        remains.reset(static_cast<BYTE*>(memory));
        sizeOfRemains = size;
    }
    static bool AreRemainsUntouched()
    {
        return std::all_of(remains.get(), remains.get() + sizeOfRemains,
                           [](BYTE left) { return left == mark; });
    }
    static void Bury()
    {
        remains.reset();
        sizeOfRemains = 0;
    }

private:
    static constexpr BYTE mark = 0xDD;

    struct Free
    {
        void operator()(BYTE* memory) const { ::operator delete(memory); }
    };
    static inline std::unique_ptr<BYTE, Free> remains;
    static inline std::size_t sizeOfRemains = 0;
};
