// VOZObject.cpp: the root of the kernel's objects.

#include "VOZObject.h"

VOZObject::~VOZObject() = default;

void VOZObject::Destroy()
{
    delete this;
}
