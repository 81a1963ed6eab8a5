// A long life of a unit's ACLs: rules come and go, their ports change, the chip and the memory fail at
// random. After every step the records must agree with each other, with the rules that are known to be
// installed and with the chip.
#include <fmt/format.h>

#include <bit>
#include <cstring>
#include <map>
#include <set>

#include "acl/acl.h"
#include "records/acl_records.h"
#include "tests/kit/acl_rules.h"
#include "tests/kit/device.h"
#include "tests/kit/random.h"

namespace
{

constexpr uint32_t kUnit = 1;
constexpr uint32_t kNoCounter = 0xFFFFFFFF;

struct Installed {
    uint32_t first;
    uint32_t count;
    uint32_t counter = kNoCounter;
    uint32_t ports;
    bool erased = false;         // deleted, not yet released
    bool portsUncertain = false; // a port change failed half-way
};

class Life
{
public:
    Life(zrtest::Device &dev, uint32_t seed) : dev_(dev), random_(seed) {}

    void run(unsigned steps)
    {
        for (unsigned step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            SCOPED_TRACE(fmt::format("step {}", step));
            injected_ = false;
            const uint32_t what = below(10);
            if (what < 4)
                add();
            else if (what < 7)
                changePorts();
            else if (what < 8)
                erase();
            else
                release();
            dev_.clearInjections();
            dev_.takeFailures();
            check();
        }
    }

    // Everything goes, and everything can be had again.
    void drainAndFill()
    {
        while (!rules_.empty()) {
            if (!rules_.begin()->second.erased) {
                ASSERT_EQ(acl().delEntry(kUnit, rules_.begin()->second.first), 0U);
            }
            ASSERT_EQ(acl().releaseRuleRecord(kUnit, rules_.begin()->first), 0U);
            rules_.erase(rules_.begin());
        }
        check();
        const uint32_t sizes[4] = {16, 58, 6, 16};
        uint32_t added = 0;
        for (uint32_t partition = 0; partition < 4; ++partition) {
            for (uint32_t i = 0; i < sizes[partition]; ++i, ++added) {
                LswmAclRule rule = zrtest::oneEntryRule(partition);
                if (added < 32)
                    rule.action.flags |= LSWM_ACTION_COUNT;
                uint32_t logicRuleId = 0;
                ASSERT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 0U);
                ASSERT_EQ(logicRuleId, added);
            }
        }
        EXPECT_EQ(ZR_OP(COM_ACL_GetCounterInfo)(kUnit)->usedNum, 32U);
        EXPECT_EQ(dev_.takeFailures(), zrtest::Texts{});
    }

    unsigned refusals() const { return refusals_; }
    unsigned successes() const { return successes_; }

private:
    const ZrAclOps &acl() const { return dev_.ops().acl; }
    uint32_t below(uint32_t end) { return static_cast<uint32_t>(random_() % end); }

    // In a third of the steps one of the calls that follow fails.
    void disturb(std::initializer_list<const char *> names)
    {
        if (below(3) != 0)
            return;
        const char *name = *(names.begin() + below(static_cast<uint32_t>(names.size())));
        const uint32_t statuses[] = {1, 22, 0xFFFFFFFF};
        dev_.fail(name, statuses[below(3)], 1 + below(8));
        injected_ = true;
    }

    Installed *pick()
    {
        if (rules_.empty())
            return nullptr;
        auto found = rules_.begin();
        std::advance(found, below(static_cast<uint32_t>(rules_.size())));
        return &found->second;
    }

    void add()
    {
        LswmAclRule (*const kinds[])(uint32_t) = {zrtest::oneEntryRule, zrtest::twoEntryRule,
                                                  zrtest::threeEntryRule};
        LswmAclRule rule = kinds[below(3)](below(4));
        rule.match.portBitmap = static_cast<uint32_t>(random_());
        if (below(2) != 0)
            rule.action.flags |= LSWM_ACTION_COUNT;
        if (below(3) == 0) {
            rule.action.flags |= LSWM_ACTION_CAR;
            rule.action.carId = below(64);
        }
        uint32_t logicRuleId = 0;
        if (acl().allocLogicRuleId(kUnit, rule.partition, &logicRuleId) != 0) {
            EXPECT_EQ(rules_.size(), 96U);
            return;
        }
        disturb({"LSWM_MemAlloc", "l2sw_filter_igrAcl_field_add", "l2swFilterIgrAclRuleNumGet",
                 "l2sw_filter_igrAcl_cfg_add"});
        AclEntryPlace place{};
        if (acl().addEntry(kUnit, &rule, &place) != 0) {
            ++refusals_;
            return;
        }
        ++successes_;
        // A record under a taken id is refused and takes nothing.
        if (!rules_.empty()) {
            EXPECT_EQ(acl().setRuleMapEntry(kUnit, rules_.begin()->first, place.firstChipId, place.count), 6U);
        }
        ASSERT_EQ(acl().setRuleMapEntry(kUnit, logicRuleId, place.firstChipId, place.count), 0U);
        Installed installed{place.firstChipId, place.count, kNoCounter, rule.match.portBitmap & 0x3801F};
        if ((rule.action.flags & LSWM_ACTION_COUNT) != 0)
            installed.counter = rule.action.counterId;
        ASSERT_TRUE(rules_.emplace(logicRuleId, installed).second);
    }

    void changePorts()
    {
        Installed *rule = pick();
        if (rule == nullptr || rule->erased)
            return;
        const auto word = static_cast<uint32_t>(random_());
        const uint32_t mask = word & 0x3801F;
        const uint32_t ports[4] = {word, ~0U, ~0U, ~0U};
        const uint32_t id = rule->first + below(rule->count); // any entry of the run names the rule
        disturb({"l2sw_filter_igrAcl_entry_modifybitmap", "l2sw_filter_igrAcl_entry_addbitmap",
                 "l2sw_filter_igrAcl_entry_removebitmap"});
        uint32_t status = 0;
        switch (below(3)) {
        case 0:
            status = acl().modifyEntryPortmap(kUnit, id, ports);
            if (status == 0)
                rule->portsUncertain = false;
            rule->ports = mask;
            break;
        case 1:
            status = acl().addEntryPortmap(kUnit, id, ports);
            rule->ports |= mask;
            break;
        default:
            status = acl().removeEntryPortmap(kUnit, id, ports);
            rule->ports &= ~mask;
            break;
        }
        if (status != 0) {
            EXPECT_TRUE(injected_);
            rule->portsUncertain = true;
            ++refusals_;
        }
    }

    // Deletes, sometimes a rule that was deleted before.
    void erase()
    {
        Installed *rule = pick();
        if (rule == nullptr)
            return;
        disturb({"l2sw_filter_igrAcl_cfg_del"});
        EXPECT_EQ(acl().delEntry(kUnit, rule->first + below(rule->count)), 0U);
        rule->erased = true;
        rule->counter = kNoCounter;
    }

    void release()
    {
        if (rules_.empty())
            return;
        auto found = rules_.begin();
        std::advance(found, below(static_cast<uint32_t>(rules_.size())));
        if (!found->second.erased) {
            EXPECT_EQ(acl().delEntry(kUnit, found->second.first), 0U);
        }
        EXPECT_EQ(acl().releaseRuleRecord(kUnit, found->first), 0U);
        rules_.erase(found);
    }

    void check()
    {
        const AclRuleInfo &info = *ZR_OP(COM_ACL_GetRuleInfo)(kUnit);
        const AclCounterInfo &counterInfo = *ZR_OP(COM_ACL_GetCounterInfo)(kUnit);
        std::set<uint32_t> chipIds;
        std::set<uint32_t> counters;
        for (const auto &[logicRuleId, rule] : rules_) {
            uint32_t first = 0;
            ASSERT_EQ(acl().logicRuleToChipRule(kUnit, logicRuleId, &first), 0U);
            ASSERT_EQ(first, rule.first);
            for (uint32_t i = 0; i < rule.count; ++i) {
                ASSERT_TRUE(chipIds.insert(first + i).second) << "two rules hold chip id " << first + i;
                const zrsim::AclEntry &entry = dev_.chip(kUnit).acl.entry(first + i);
                if (rule.erased)
                    continue;
                ASSERT_EQ(entry.parts, rule.count);
                ASSERT_EQ(entry.part, i);
                if (!rule.portsUncertain) {
                    ASSERT_EQ(entry.ports, rule.ports);
                }
            }
            uint32_t counter = kNoCounter;
            ZR_OP(COM_ACL_GetCounterIdFromChipRuleId)(kUnit, first, &counter);
            ASSERT_EQ(counter, rule.counter) << "of logic rule " << logicRuleId;
            if (counter != kNoCounter) {
                ASSERT_TRUE(counters.insert(counter).second) << "two rules hold counter " << counter;
            }
        }
        ASSERT_EQ(info.ruleRecordNum, rules_.size());
        for (uint32_t id = 0; id < 256; ++id) {
            ASSERT_EQ(info.logicInUse[id / 32] >> id % 32 & 1, rules_.count(id)) << id;
            ASSERT_EQ(info.chipInUse[id / 32] >> id % 32 & 1, chipIds.count(id)) << id;
            ASSERT_EQ(counterInfo.inUse[id / 32] >> id % 32 & 1, counters.count(id));
        }
        ASSERT_EQ(counterInfo.usedNum, counters.size());
        ASSERT_EQ(zrsim::memory().liveBlocks(), 3U);
        ASSERT_EQ(zrsim::memory().badFrees(), 0U);
    }

    zrtest::Device &dev_;
    std::mt19937 random_;
    std::map<uint32_t, Installed> rules_; // by logic rule id
    bool injected_ = false;
    unsigned refusals_ = 0;
    unsigned successes_ = 0;
};

TEST(AclLife, KeepsItsRecordsThroughRandomRulesAndFailures)
{
    const uint32_t seed = zrtest::randomSeed();
    SCOPED_TRACE(fmt::format("repeat with ZR_SEED={}", seed));
    zrtest::Device dev;
    dev.bringUp();
    dev.record(false);
    ASSERT_EQ(dev.ops().acl.init(kUnit), 0U);
    for (uint32_t policy = 0; policy < 5; ++policy) {
        ASSERT_EQ(dev.ops().acl.delEntry(kUnit, policy), 0U);
        ASSERT_EQ(dev.ops().acl.releaseRuleRecord(kUnit, policy), 0U);
    }
    Life life(dev, seed);
    life.run(8000);
    EXPECT_GT(life.successes(), 500U) << "the sequence must reach something";
    EXPECT_GT(life.refusals(), 200U);
    life.drainAndFill();
}

} // namespace
