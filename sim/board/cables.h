// Cables between ports of the board's own units. A port has at most one; what leaves by it comes in at the
// other end.
#pragma once

#include <cstdint>
#include <map>
#include <utility>

namespace zrsim
{

class Cables
{
public:
    struct End {
        uint32_t unit;
        uint32_t port;
        auto operator<=>(const End &) const = default;
    };

    // The cable takes the place of those that either end had.
    void connect(End a, End b)
    {
        disconnect(a);
        disconnect(b);
        peers_[a] = b;
        peers_[b] = a;
    }
    void disconnect(End end)
    {
        if (auto found = peers_.find(end); found != peers_.end()) {
            peers_.erase(found->second);
            peers_.erase(end);
        }
    }
    // The other end, or null.
    const End *peer(End end) const
    {
        auto found = peers_.find(end);
        return found != peers_.end() ? &found->second : nullptr;
    }
    const std::map<End, End> &all() const { return peers_; }
    void clear() { peers_.clear(); }

private:
    std::map<End, End> peers_; // both ways
};

} // namespace zrsim
