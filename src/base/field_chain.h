// Ownership of the field nodes of one chip rule configuration.
#pragma once

#include "platform/chip_records.h"
#include "platform/manager.h"

namespace zr
{

// Frees the nodes chained into `cfg` when it goes out of scope. They are the library's: the SDK uses them
// during its calls only.
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
