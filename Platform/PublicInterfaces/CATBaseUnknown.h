// CATBaseUnknown.h: the host's base class: reference count and class metadata.
//
// An object starts with one reference, held by its maker. AddRef and Release count; the last Release deletes. An object
// on the stack is never released. Not safe across threads.
//
// QueryInterface asks an object for another of its faces by the name of the interface's class. CATInterfaceVar, from
// which the X_var pointers derive, holds one reference and asks on construction.
//
// A class joins the metadata by CATDeclareClass in its body and CATImplementClass in its source: MetaObject() registers
// it under its own name, class type 1, its base's meta object and the texts "CATNull" and "External", on first use, and
// keeps the pointer in a static.

#ifndef CATBASEUNKNOWN_H
#define CATBASEUNKNOWN_H

#include "ExportedByVOZPlatform.h"

#include <cstddef>
#include <utility>

class ExportedByVOZPlatform CATMetaClass
{
public:
    CATMetaClass(char const * i_name, int i_classType, CATMetaClass const * i_base, char const * i_extended,
                 char const * i_kind)
        : mName(i_name), mClassType(i_classType), mBase(i_base), mExtended(i_extended), mKind(i_kind)
    {
    }
    char const * Name() const { return mName; }
    int ClassType() const { return mClassType; }
    CATMetaClass const * Base() const { return mBase; } // null at the root
    char const * Extended() const { return mExtended; } // "CATNull"
    char const * Kind() const { return mKind; }         // "External"
    bool IsAKindOf(char const * i_name) const;          // this class or one of its bases

private:
    char const * mName;
    int mClassType;
    CATMetaClass const * mBase;
    char const * mExtended;
    char const * mKind;
};

// The meta object of that name, made at the first call; it lives as long as the process.
ExportedByVOZPlatform CATMetaClass * fct_RetrieveMetaObject(char const * i_name, int i_classType,
                                                            CATMetaClass const * i_base, char const * i_extended,
                                                            char const * i_kind);

class ExportedByVOZPlatform CATBaseUnknown
{
public:
    CATBaseUnknown() = default;
    CATBaseUnknown(CATBaseUnknown const &) : mReferences(1) {}
    CATBaseUnknown & operator=(CATBaseUnknown const &) { return *this; } // the count belongs to the object
    virtual ~CATBaseUnknown() = default;

    virtual unsigned int AddRef();
    virtual unsigned int Release();
    virtual CATMetaClass * GetMetaObject() const;

    // The object's form of that interface, with one reference for the caller, and 0; or null and E_NOINTERFACE. This
    // class gives the object itself if it is of that kind.
    virtual long QueryInterface(char const * i_interface, CATBaseUnknown ** o_object);

    virtual char const * IsA() const;                 // the class's name
    virtual int IsAKindOf(char const * i_name) const; // 1 or 0

    static CATMetaClass * MetaObject();
    static char const * ClassName();
    static CATMetaClass const & ClassId();

private:
    unsigned int mReferences = 1;
};

#define CATDeclareClass                                                                                                \
public:                                                                                                                \
    CATMetaClass * GetMetaObject() const override;                                                                     \
    char const * IsA() const override;                                                                                 \
    int IsAKindOf(char const * i_name) const override;                                                                 \
    static CATMetaClass * MetaObject();                                                                                \
    static char const * ClassName();                                                                                   \
    static CATMetaClass const & ClassId()

#define CATImplementClass(Class, Base)                                                                                 \
    CATMetaClass * Class::MetaObject()                                                                                 \
    {                                                                                                                  \
        static CATMetaClass * const meta =                                                                             \
            fct_RetrieveMetaObject(#Class, 1, Base::MetaObject(), "CATNull", "External");                              \
        return meta;                                                                                                   \
    }                                                                                                                  \
    CATMetaClass * Class::GetMetaObject() const                                                                        \
    {                                                                                                                  \
        return MetaObject();                                                                                           \
    }                                                                                                                  \
    char const * Class::IsA() const                                                                                    \
    {                                                                                                                  \
        return MetaObject()->Name();                                                                                   \
    }                                                                                                                  \
    int Class::IsAKindOf(char const * i_name) const                                                                    \
    {                                                                                                                  \
        return MetaObject()->IsAKindOf(i_name) ? 1 : 0;                                                                \
    }                                                                                                                  \
    char const * Class::ClassName()                                                                                    \
    {                                                                                                                  \
        return MetaObject()->Name();                                                                                   \
    }                                                                                                                  \
    CATMetaClass const & Class::ClassId()                                                                              \
    {                                                                                                                  \
        return *MetaObject();                                                                                          \
    }

// A counted pointer to an interface; null where the object asked has no such form.
template <class Interface>
class CATInterfaceVar
{
public:
    CATInterfaceVar() = default;
    CATInterfaceVar(std::nullptr_t) {}
    CATInterfaceVar(CATBaseUnknown * i_object) // asks; the caller keeps the reference that it has
    {
        CATBaseUnknown * found = nullptr;
        if (i_object != nullptr && i_object->QueryInterface(Interface::ClassName(), &found) == 0)
            mObject = static_cast<Interface *>(found);
    }
    template <class Other>
    CATInterfaceVar(CATInterfaceVar<Other> const & i_other) : CATInterfaceVar(i_other.Object())
    {
    }
    CATInterfaceVar(CATInterfaceVar const & i_other) : mObject(i_other.mObject)
    {
        if (mObject != nullptr)
            mObject->AddRef();
    }
    CATInterfaceVar(CATInterfaceVar && io_other) noexcept : mObject(std::exchange(io_other.mObject, nullptr)) {}
    CATInterfaceVar & operator=(CATInterfaceVar i_other) noexcept
    {
        std::swap(mObject, i_other.mObject);
        return *this;
    }
    ~CATInterfaceVar()
    {
        if (mObject != nullptr)
            mObject->Release();
    }

    // Takes over a reference that the caller has.
    static CATInterfaceVar Adopt(Interface * i_object)
    {
        CATInterfaceVar adopted;
        adopted.mObject = i_object;
        return adopted;
    }

    Interface * operator->() const { return mObject; }
    Interface * Object() const { return mObject; } // lent
    bool operator!() const { return mObject == nullptr; }
    explicit operator bool() const { return mObject != nullptr; }

private:
    Interface * mObject = nullptr;
};

// The class X_var of an interface X.
#define CATDeclareInterfaceVar(Interface)                                                                              \
    class Interface##_var : public CATInterfaceVar<Interface>                                                          \
    {                                                                                                                  \
    public:                                                                                                            \
        using CATInterfaceVar<Interface>::CATInterfaceVar;                                                             \
        Interface##_var() = default;                                                                                   \
        Interface##_var(CATInterfaceVar<Interface> i_other) : CATInterfaceVar<Interface>(std::move(i_other)) {}        \
    }

CATDeclareInterfaceVar(CATBaseUnknown);

#endif
