#include "FailingNew.h"

#include <cstddef>
#include <new>

namespace
{
int gToGo = 0; // allocations up to the one that is refused; 0: none is

bool isRefused()
{
    return gToGo > 0 && --gToGo == 0;
}

bool gWasRefused = false;

template <class Allocate>
void * allocate(Allocate i_allocate) noexcept
{
    if (isRefused())
    {
        gWasRefused = true;
        return nullptr;
    }
    try
    {
        return i_allocate();
    }
    catch (std::bad_alloc const &)
    {
        return nullptr;
    }
}
} // namespace

FailingNew::FailingNew(int i_number)
{
    gToGo = i_number;
    gWasRefused = false;
}

FailingNew::~FailingNew()
{
    gToGo = 0;
}

bool FailingNew::reachesTheLibrary()
{
#ifdef _WIN32
    return false;
#else
    return true;
#endif
}

bool FailingNew::refused() const
{
    return gWasRefused;
}

// In the place of the standard library's: what they give is freed by its ordinary operators.
void * operator new(std::size_t i_size, std::nothrow_t const &) noexcept
{
    return allocate([=] { return ::operator new(i_size); });
}

void * operator new[](std::size_t i_size, std::nothrow_t const &) noexcept
{
    return allocate([=] { return ::operator new[](i_size); });
}
