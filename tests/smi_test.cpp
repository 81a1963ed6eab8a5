// The SMI transport: what goes over the bus, on plain and on verified revisions, and every way to fail.
#include "chip/smi.h"

#include "platform/chip_sdk.h"
#include "tests/kit/device.h"

namespace zrtest
{
namespace
{

class SmiTest : public RunningDeviceTest
{
protected:
    // A unit whose writes need no confirming, and one whose writes do.
    static constexpr uint8_t kPlain = 1;
    static constexpr uint8_t kVerified = 2;
};

TEST_F(SmiTest, PlainAccessIsFourTransfersInOrder)
{
    dev.chip(kPlain).registers().preset(0x1234, 0xBEEF);
    uint32_t value = 0xFFFFFFFF;
    EXPECT_EQ(ZR_OP(L2sw_SmiRead)(kPlain, 0x1234, &value), 0U);
    EXPECT_EQ(value, 0xBEEFU);
    EXPECT_EQ(dev.calls(),
              (Texts{"HAL_PORT_SmiWrite(1, 0, 31, 14) = 0", "HAL_PORT_SmiWrite(1, 0, 23, 4660) = 0",
                     "HAL_PORT_SmiWrite(1, 0, 21, 1) = 0", "HAL_PORT_SmiRead(1, 0, 25, &0xbeef) = 0"}));
    dev.forget();
    EXPECT_EQ(ZR_OP(L2sw_SmiWrite)(kPlain, 0x1234, 0x00C0FFEE), 0U);
    EXPECT_EQ(dev.calls(),
              (Texts{"HAL_PORT_SmiWrite(1, 0, 31, 14) = 0", "HAL_PORT_SmiWrite(1, 0, 23, 4660) = 0",
                     "HAL_PORT_SmiWrite(1, 0, 24, 0xffee) = 0", "HAL_PORT_SmiWrite(1, 0, 21, 3) = 0"}));
    EXPECT_EQ(dev.chip(kPlain).registers().read(0x1234), 0xFFEE);
}

TEST_F(SmiTest, VerifiedAccessConfirmsEveryWriteAtItsOwnAddress)
{
    uint32_t value = 0;
    EXPECT_EQ(ZR_OP(L2sw_SmiWrite)(kVerified, 0x13C4, 0x1016), 0U);
    EXPECT_EQ(dev.calls(),
              (Texts{"HAL_PORT_SmiWrite(1, 29, 31, 14) = 0", "HAL_PORT_SmiRead(1, 29, 31, &14) = 0",
                     "HAL_PORT_SmiWrite(1, 29, 23, 5060) = 0", "HAL_PORT_SmiRead(1, 29, 23, &5060) = 0",
                     "HAL_PORT_SmiWrite(1, 29, 24, 4118) = 0", "HAL_PORT_SmiRead(1, 29, 24, &4118) = 0",
                     "HAL_PORT_SmiWrite(1, 29, 21, 3) = 0", "HAL_PORT_SmiRead(1, 29, 21, &3) = 0"}));
    dev.forget();
    EXPECT_EQ(ZR_OP(L2sw_SmiRead)(kVerified, 0x13C4, &value), 0U);
    EXPECT_EQ(value, 0x1016U);
    EXPECT_EQ(dev.calls().size(), 7U);
    EXPECT_EQ(dev.calls().back(), "HAL_PORT_SmiRead(1, 29, 25, &4118) = 0");

    const auto *addresses = static_cast<const uint32_t *>(dev.symbol("phyAddr"));
    EXPECT_EQ(std::vector(addresses, addresses + 3), (std::vector<uint32_t>{0, 0, 29}));
}

TEST_F(SmiTest, TransferStatusesAreSummedAndAllTransfersMade)
{
    uint32_t value = 77;
    dev.fail("HAL_PORT_SmiWrite", 5, 1);
    dev.fail("HAL_PORT_SmiRead", 7, 1);
    EXPECT_EQ(ZR_OP(L2sw_SmiRead)(kPlain, 0x12345678, &value), 4U);
    EXPECT_EQ(value, 77U);
    EXPECT_EQ(dev.calls().size(), 4U);
    EXPECT_EQ(dev.takeFailures(), Texts{"0/12 Chip smi read unit 1 addr 0x12345678"});

    dev.forget();
    dev.fail("HAL_PORT_SmiWrite", 5);
    EXPECT_EQ(ZR_OP(L2sw_SmiWrite)(kPlain, 0x12345678, 0x9ABCDEF0), 4U);
    EXPECT_EQ(dev.calls().size(), 4U);
    EXPECT_EQ(dev.takeFailures(), Texts{"0/20 Chip smi write unit 1 addr 0x12345678 data 0x9abcdef0"});
}

TEST_F(SmiTest, ConfirmationIsTriedSixTimes)
{
    // A register that holds the value from the third attempt on costs three attempts.
    unsigned attempts = 0;
    dev.script("HAL_PORT_SmiRead", [&](const zrsim::Call &call) {
        *call.pointer<uint16_t>(3) = ++attempts < 3 ? 0x1111 : 14;
        return 0U;
    });
    EXPECT_EQ(ZR_OP(L2sw_Op_Wait)(kVerified, 31, 14), 0U);
    EXPECT_EQ(dev.calls().size(), 6U);

    // One that never does, six; the value read last is reported.
    dev.forget();
    dev.script("HAL_PORT_SmiRead", [](const zrsim::Call &call) {
        *call.pointer<uint16_t>(3) = 0xAB;
        return 0U;
    });
    EXPECT_EQ(ZR_OP(L2sw_Op_Wait)(kVerified, 23, 0xCD), 4U);
    EXPECT_EQ(dev.calls().size(), 12U);
    EXPECT_EQ(dev.takeFailures(), Texts{"0/4 l2sw wait timeout unit 2 reg 0x17 op 0xcd val 0xab"});
}

TEST_F(SmiTest, AConfirmedAttemptWithAFailedTransferReportsIt)
{
    dev.fail("HAL_PORT_SmiWrite", 9, 2); // the register still holds the value from before
    EXPECT_EQ(ZR_OP(L2sw_Op_Wait)(kVerified, 31, 14), 0U);
    dev.forget();
    EXPECT_EQ(ZR_OP(L2sw_Op_Wait)(kVerified, 31, 14), 9U);
    EXPECT_EQ(dev.calls().size(), 2U);
    EXPECT_EQ(dev.takeFailures(), Texts{"0/4 l2sw Op_Wait failed, unit 2 reg 0x1f op 0xe"});
}

TEST_F(SmiTest, AFailedReadBackConfirmsNothing)
{
    Texts expected(6, "0/4 l2sw Op_Wait failed, unit 2 reg 0x1f op 0x0");
    expected.push_back("0/4 l2sw wait timeout unit 2 reg 0x1f op 0x0 val 0x0");
    // 0 is what an untouched variable would hold, and what a failing read may well store.
    dev.script("HAL_PORT_SmiRead", [](const zrsim::Call &call) {
        *call.pointer<uint16_t>(3) = 0;
        return 22U;
    });
    EXPECT_EQ(ZR_OP(L2sw_Op_Wait)(kVerified, 31, 0), 4U);
    EXPECT_EQ(dev.takeFailures(), expected);
}

TEST_F(SmiTest, AStuckRegisterFailsTheAccessItBelongsTo)
{
    // Stuck at 14 less one: never confirmed, the other registers are still written.
    dev.chip(kVerified);
    zrsim::board().bus().write(29, 23, 0x0001);
    zrsim::board().bus().stick(29, 23);
    uint32_t value = 77;
    EXPECT_EQ(ZR_OP(L2sw_SmiRead)(kVerified, 0x1300, &value), 4U);
    EXPECT_EQ(value, 77U);
    EXPECT_EQ(dev.calls().size(), 2U + 12U + 2U + 1U);
    EXPECT_EQ(dev.takeFailures(), (Texts{"0/4 l2sw wait timeout unit 2 reg 0x17 op 0x1300 val 0x1",
                                         "0/4 Chip smi read unit 2 addr 0x1300"}));
}

} // namespace
} // namespace zrtest
