// A chip's register file: 16-bit addresses, 16-bit values. Given: registers read back what was written.
// The model's own choice: all start at 0; a model may stand behind a register and supply its value or act on a
// write.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace zrsim
{

class Registers
{
public:
    using OnRead = std::function<uint16_t()>;
    using OnWrite = std::function<void(uint16_t value)>;

    uint16_t read(uint16_t address) const
    {
        auto hook = onRead_.find(address);
        return hook != onRead_.end() ? hook->second() : held(address);
    }
    void write(uint16_t address, uint16_t value)
    {
        values_[address] = value;
        if (auto hook = onWrite_.find(address); hook != onWrite_.end())
            hook->second(value);
    }
    // What a register holds, past any model behind it.
    uint16_t held(uint16_t address) const
    {
        auto value = values_.find(address);
        return value != values_.end() ? value->second : uint16_t{0};
    }
    void preset(uint16_t address, uint16_t value) { values_[address] = value; }

    void onRead(uint16_t address, OnRead hook) { onRead_[address] = std::move(hook); }
    void onWrite(uint16_t address, OnWrite hook) { onWrite_[address] = std::move(hook); }
    void clear() { values_.clear(); }

    // The registers that are not 0, in ascending order.
    std::vector<std::pair<uint16_t, uint16_t>> used() const
    {
        std::vector<std::pair<uint16_t, uint16_t>> pairs;
        for (auto [address, value] : values_)
            if (value != 0)
                pairs.emplace_back(address, value);
        return pairs;
    }

private:
    std::map<uint16_t, uint16_t> values_; // those written since the last reset
    std::map<uint16_t, OnRead> onRead_;
    std::map<uint16_t, OnWrite> onWrite_;
};

} // namespace zrsim
