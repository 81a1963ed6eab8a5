// A long life of a unit's ACLs: rules come and go, their ports change, the chip and the memory fail at
// random. Ids are the lowest that are free, and after every step the records must agree with each other, with
// the rules that are known to be installed and with the chip.
#include <fmt/format.h>

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
constexpr uint32_t kNone = 0xFFFFFFFF;
constexpr uint32_t kRules = 96;
constexpr uint32_t kCounters = 32;

// Chip ids of the partitions.
constexpr struct {
    uint32_t first, end;
} kPartitions[4] = {{0, 16}, {16, 74}, {74, 80}, {80, 96}};

// The lowest of `count` consecutive ids that are free, or `end`.
uint32_t lowestRun(const std::set<uint32_t> &taken, uint32_t first, uint32_t end, uint32_t count = 1)
{
    for (; first + count <= end; ++first)
        if (const auto next = taken.lower_bound(first); next == taken.end() || *next >= first + count)
            return first;
    return end;
}

struct Installed {
    uint32_t first, count, ports;
    uint32_t counter = kNone;
    uint32_t meter = kNone;
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
        for (uint32_t partition = 0; partition < 4; ++partition) {
            for (uint32_t id = kPartitions[partition].first; id < kPartitions[partition].end; ++id) {
                LswmAclRule rule = zrtest::oneEntryRule(partition);
                rule.action.flags |= LSWM_ACTION_COUNT;
                uint32_t logicRuleId = kNone;
                ASSERT_EQ(ZR_OP(ZR_ACL_AddLogicEntry)(kUnit, &rule, &logicRuleId), 0U);
                ASSERT_EQ(logicRuleId, id);
                const bool counts = id < kCounters;
                ASSERT_EQ((rule.action.flags & LSWM_ACTION_COUNT) != 0, counts);
                ASSERT_EQ(dev_.chip(kUnit).acl.entry(id).action.counterEnable, counts);
            }
        }
        EXPECT_EQ(dev_.takeFailures(), zrtest::Texts(kRules - kCounters, "6/4 Chip 8 Add Assign unit:1"));
    }

    unsigned refusals() const { return refusals_; }
    unsigned successes() const { return successes_; }

private:
    const ZrAclOps &acl() const { return dev_.ops().acl; }
    uint32_t below(size_t end) { return static_cast<uint32_t>(random_() % end); }

    // In a third of the steps one of the calls that follow fails.
    void disturb(std::initializer_list<const char *> names)
    {
        if (below(3) != 0)
            return;
        const char *name = *(names.begin() + below(names.size()));
        const uint32_t statuses[] = {1, 22, 0xFFFFFFFF};
        dev_.fail(name, statuses[below(3)], 1 + below(8));
        injected_ = true;
    }

    // A rule, or the end when there is none.
    std::map<uint32_t, Installed>::iterator pick()
    {
        return rules_.empty() ? rules_.end() : std::next(rules_.begin(), below(rules_.size()));
    }

    void add()
    {
        LswmAclRule (*const kinds[])(uint32_t) = {zrtest::oneEntryRule, zrtest::twoEntryRule,
                                                  zrtest::threeEntryRule};
        const uint32_t count = 1 + below(3);
        LswmAclRule rule = kinds[count - 1](below(4));
        rule.match.portBitmap = static_cast<uint32_t>(random_());
        uint32_t counter = kNone;
        rule.action.counterId = 31; // the library chooses
        if (below(2) != 0) {
            rule.action.flags |= LSWM_ACTION_COUNT;
            counter = lowestRun(counters_, 0, kCounters);
        }
        if (below(3) == 0) {
            rule.action.flags |= LSWM_ACTION_CAR;
            rule.action.carId = below(64);
        }
        uint32_t logicRuleId = kRules;
        EXPECT_EQ(acl().allocLogicRuleId(kUnit, rule.partition, &logicRuleId),
                  rules_.size() < kRules ? 0U : 7U);
        ASSERT_EQ(logicRuleId, lowestRun(logicIds_, 0, kRules));
        disturb({"LSWM_MemAlloc", "l2sw_filter_igrAcl_field_add", "l2swFilterIgrAclRuleNumGet",
                 "l2sw_filter_igrAcl_cfg_add"});
        const auto [first, end] = kPartitions[rule.partition];
        const uint32_t run = lowestRun(chipIds_, first, end, count);
        AclEntryPlace place{};
        const uint32_t status = acl().addEntry(kUnit, &rule, &place);
        if (!injected_) {
            EXPECT_EQ(status, run < end ? 0U : 7U);
        }
        if (status != 0) {
            ++refusals_;
            return;
        }
        ++successes_;
        ASSERT_EQ(place.firstChipId, run);
        ASSERT_EQ(place.count, count);
        Installed installed{run, count, rule.match.portBitmap & 0x3801F};
        const FilterAct &act = dev_.chip(kUnit).acl.entry(run).action;
        if (counter < kCounters) {
            ASSERT_EQ(rule.action.counterId, counter);
            ASSERT_EQ(act.counterId, counter);
            installed.counter = counter;
        }
        if ((rule.action.flags & LSWM_ACTION_CAR) != 0) {
            ASSERT_EQ(act.carId, rule.action.carId);
            installed.meter = rule.action.carId;
        }
        EXPECT_EQ(acl().delEntry(kUnit, run), 4U) << "no rule before it is recorded";
        // A record under a taken id is refused and takes nothing.
        if (!rules_.empty()) {
            EXPECT_EQ(acl().setRuleMapEntry(kUnit, rules_.begin()->first, run, count), 6U);
        }
        ASSERT_EQ(acl().setRuleMapEntry(kUnit, logicRuleId, run, count), 0U);
        rules_.emplace(logicRuleId, installed);
    }

    void changePorts()
    {
        const auto found = pick();
        if (found == rules_.end() || found->second.erased)
            return;
        Installed *rule = &found->second;
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
        const auto found = pick();
        if (found == rules_.end())
            return;
        Installed &rule = found->second;
        disturb({"l2sw_filter_igrAcl_cfg_del"});
        EXPECT_EQ(acl().delEntry(kUnit, rule.first + below(rule.count)), 0U);
        rule.erased = true;
        rule.counter = rule.meter = kNone;
    }

    void release()
    {
        const auto found = pick();
        if (found == rules_.end())
            return;
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
        logicIds_.clear();
        chipIds_.clear();
        counters_.clear();
        auto &ruleAt = ZR_OP(COM_ACL_GetRuleInfoFromChipId);
        auto &counterOf = ZR_OP(COM_ACL_GetCounterIdFromChipRuleId);
        auto &meterOf = ZR_OP(COM_ACL_GetRuleCarMapEntry);
        for (const auto &[logicRuleId, rule] : rules_) {
            logicIds_.insert(logicRuleId);
            uint32_t first = kNone;
            ASSERT_EQ(acl().logicRuleToChipRule(kUnit, logicRuleId, &first), 0U);
            ASSERT_EQ(first, rule.first);
            for (uint32_t i = 0; i < rule.count; ++i) {
                chipIds_.insert(first + i);
                AclRuleInfoView view{};
                ASSERT_EQ(ruleAt(kUnit, first + i, &view), 0U);
                ASSERT_EQ(std::tie(view.logicRuleId, view.firstChipId), std::tie(logicRuleId, first));
                ASSERT_EQ(view.count, rule.count);
                const zrsim::AclEntry &entry = dev_.chip(kUnit).acl.entry(first + i);
                if (rule.erased)
                    continue;
                ASSERT_EQ(entry.parts, rule.count);
                ASSERT_EQ(entry.part, i);
                if (!rule.portsUncertain) {
                    ASSERT_EQ(entry.ports, rule.ports);
                }
            }
            uint32_t counter = kNone;
            counterOf(kUnit, first, &counter);
            ASSERT_EQ(counter, rule.counter) << "of logic rule " << logicRuleId;
            if (counter != kNone)
                counters_.insert(counter);
            uint32_t meter = kNone;
            uint32_t polices = kNone;
            ASSERT_EQ(meterOf(kUnit, first, &meter, &polices), 0U);
            ASSERT_EQ(polices != 0 ? meter : kNone, rule.meter) << "of logic rule " << logicRuleId;
        }
        ASSERT_EQ(info.ruleRecordNum, rules_.size());
        for (uint32_t id = 0; id < 256; ++id) {
            ASSERT_EQ(info.logicInUse[id / 32] >> id % 32 & 1, logicIds_.count(id)) << id;
            ASSERT_EQ(info.chipInUse[id / 32] >> id % 32 & 1, chipIds_.count(id)) << id;
            ASSERT_EQ(counterInfo.inUse[id / 32] >> id % 32 & 1, counters_.count(id)) << id;
        }
        ASSERT_EQ(counterInfo.usedNum, counters_.size());
        ASSERT_EQ(zrsim::memory().liveBlocks(), 3U);
        ASSERT_EQ(zrsim::memory().badFrees(), 0U);
    }

    zrtest::Device &dev_;
    std::mt19937 random_;
    std::map<uint32_t, Installed> rules_;              // by logic rule id
    std::set<uint32_t> logicIds_, chipIds_, counters_; // that they hold
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
    life.run(5000);
    EXPECT_GT(life.successes(), 500U) << "the sequence must reach something";
    EXPECT_GT(life.refusals(), 200U);
    life.drainAndFill();
}

} // namespace
