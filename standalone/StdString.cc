#include "host/StdString.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>

CStringArray::~CStringArray()
{
    delete[] elements;
}

int CStringArray::Add(const CStdStr<wchar_t>& text)
{
    CStdStr<wchar_t> copy(text); // first: `text` may be an element, and growing moves those
    if (size == capacity) {
        if (capacity > std::numeric_limits<int>::max() / 2) {
            throw std::bad_alloc();
        }
        const int grown = capacity == 0 ? 8 : capacity * 2;
        auto roomier = std::make_unique<CStdStr<wchar_t>[]>(static_cast<std::size_t>(grown));
        std::move(elements, elements + size, roomier.get());
        delete[] elements;
        elements = roomier.release();
        capacity = grown;
    }
    elements[size] = std::move(copy);
    return size++;
}

int CStringArray::GetSize() const noexcept
{
    return size;
}

CStdStr<wchar_t>& CStringArray::operator[](int index) noexcept
{
    return elements[index];
}

const CStdStr<wchar_t>& CStringArray::operator[](int index) const noexcept
{
    return elements[index];
}

void CStringArray::RemoveAll() noexcept
{
    delete[] elements;
    elements = nullptr;
    size = 0;
    capacity = 0;
}
