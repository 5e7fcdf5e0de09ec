// VOZTemplate.h: the kernel's array of pointers.

#ifndef VOZTEMPLATE_H
#define VOZTEMPLATE_H

// A growing array of pointers to T with indices of type Index, 0-based. It owns its own memory, not what the pointers
// point to. An index outside the array reads as null and is written nowhere.
template <class T, class Index>
class VOZTPtrArray
{
public:
    explicit VOZTPtrArray(Index i_nCapacity = 0) : m_apEntries(nullptr), m_nSize(0), m_nCapacity(0)
    {
        Reserve(i_nCapacity);
    }
    VOZTPtrArray(VOZTPtrArray const &) = delete;
    VOZTPtrArray & operator=(VOZTPtrArray const &) = delete;
    ~VOZTPtrArray() { delete[] m_apEntries; }

    Index GetSize() const { return m_nSize; }
    T * GetAt(Index i) const { return i >= 0 && i < m_nSize ? m_apEntries[i] : nullptr; }
    T * operator[](Index i) const { return GetAt(i); }
    void SetAt(Index i, T * i_pEntry)
    {
        if (i >= 0 && i < m_nSize)
            m_apEntries[i] = i_pEntry;
    }
    Index Add(T * i_pEntry) // returns the entry's index
    {
        if (m_nSize == m_nCapacity)
            Reserve(m_nCapacity > 0 ? 2 * m_nCapacity : 10);
        m_apEntries[m_nSize] = i_pEntry;
        return m_nSize++;
    }
    void RemoveAll() { m_nSize = 0; }
    void DeleteAll() // the entries, too
    {
        for (Index i = 0; i < m_nSize; ++i)
            delete m_apEntries[i];
        m_nSize = 0;
    }

private:
    void Reserve(Index i_nCapacity)
    {
        if (i_nCapacity <= m_nCapacity)
            return;
        T ** const apEntries = new T *[static_cast<unsigned long long>(i_nCapacity)];
        for (Index i = 0; i < m_nSize; ++i)
            apEntries[i] = m_apEntries[i];
        delete[] m_apEntries;
        m_apEntries = apEntries;
        m_nCapacity = i_nCapacity;
    }

    T ** m_apEntries;
    Index m_nSize;
    Index m_nCapacity;
};

#endif
