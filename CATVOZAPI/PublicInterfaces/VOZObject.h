// VOZObject.h: the root of the kernel's objects that are made by a Create and given back by Destroy.
//
// An object belongs to whoever created it. Destroy frees the object through its own module, so that a caller that was
// built with another memory manager can give it back; nothing of the object may be used afterwards.

#ifndef VOZOBJECT_H
#define VOZOBJECT_H

#include "ExportedByVOZAPINew.h"

class ExportedByVOZAPINew VOZObject
{
public:
    virtual ~VOZObject();

    void Destroy();

protected:
    VOZObject() = default;
    VOZObject(VOZObject const &) = default;
    VOZObject & operator=(VOZObject const &) = default;
};

#endif
