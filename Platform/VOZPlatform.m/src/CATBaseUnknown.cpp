#include "CATBaseUnknown.h"

#include "VOZStatus.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace
{
struct MetaRegistry
{
    std::mutex guard;
    std::map<std::string, std::unique_ptr<CATMetaClass>, std::less<>> classes;
};

// Never destroyed: an object that outlives static destruction may still ask for its class.
MetaRegistry & metaRegistry()
{
    static MetaRegistry & registry = *new MetaRegistry;
    return registry;
}
} // namespace

bool CATMetaClass::IsAKindOf(char const * i_name) const
{
    if (i_name == nullptr)
        return false;
    std::string_view const name(i_name);
    for (CATMetaClass const * meta = this; meta != nullptr; meta = meta->mBase)
        if (name == meta->mName)
            return true;
    return false;
}

CATMetaClass * fct_RetrieveMetaObject(char const * i_name, int i_classType, CATMetaClass const * i_base,
                                      char const * i_extended, char const * i_kind)
{
    MetaRegistry & registry = metaRegistry();
    std::lock_guard<std::mutex> const lock(registry.guard);
    auto [entry, isNew] = registry.classes.try_emplace(i_name);
    if (isNew)
        entry->second = std::make_unique<CATMetaClass>(i_name, i_classType, i_base, i_extended, i_kind);
    return entry->second.get();
}

unsigned int CATBaseUnknown::AddRef()
{
    return ++mReferences;
}

unsigned int CATBaseUnknown::Release()
{
    unsigned int const left = --mReferences;
    if (left == 0)
        delete this;
    return left;
}

long CATBaseUnknown::QueryInterface(char const * i_interface, CATBaseUnknown ** o_object)
{
    *o_object = nullptr;
    if (IsAKindOf(i_interface) == 0)
        return E_NOINTERFACE;
    AddRef();
    *o_object = this;
    return 0;
}

CATMetaClass * CATBaseUnknown::MetaObject()
{
    static CATMetaClass * const meta = fct_RetrieveMetaObject("CATBaseUnknown", 1, nullptr, "CATNull", "External");
    return meta;
}

CATMetaClass * CATBaseUnknown::GetMetaObject() const
{
    return MetaObject();
}

char const * CATBaseUnknown::IsA() const
{
    return MetaObject()->Name();
}

int CATBaseUnknown::IsAKindOf(char const * i_name) const
{
    return MetaObject()->IsAKindOf(i_name) ? 1 : 0;
}

char const * CATBaseUnknown::ClassName()
{
    return MetaObject()->Name();
}

CATMetaClass const & CATBaseUnknown::ClassId()
{
    return *MetaObject();
}
