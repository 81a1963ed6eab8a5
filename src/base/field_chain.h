// Ownership of the field nodes of one chip rule configuration.
#pragma once

#include "platform/chip_records.h"
#include "platform/manager.h"

namespace zr
{

// Gives the nodes chained into `cfg` back to the manager's memory when it goes out of scope, on every
// path: the SDK only borrows them for its calls.
class FieldChain
{
public:
    explicit FieldChain(FilterCfg &cfg) : cfg_(cfg) {}
    ~FieldChain()
    {
        for (FilterField *field = cfg_.head; field != nullptr;) {
            FilterField *next = field->next;
            LSWM_MemFree(field);
            field = next;
        }
    }
    FieldChain(const FieldChain &) = delete;
    FieldChain &operator=(const FieldChain &) = delete;

private:
    FilterCfg &cfg_;
};

} // namespace zr
