#include "Host/Ledger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(HostLedger, NamesWhatIsStillOut) {
    Ledger ledger;
    ledger.lend(Loan::Parameter, 1, "Grid Width", 17);
    ledger.lend(Loan::Suite, 5, "PF Handle Suite", 2);
    ledger.lend(Loan::Suite, 5, "PF Handle Suite", 2);
    EXPECT_THAT(ledger.outstanding(),
                ElementsAre("parameter \"Grid Width\" (17)", "suite \"PF Handle Suite\" (2), 2 times"));
}

TEST(HostLedger, EndsEachLoanOnce) {
    Ledger ledger;
    ledger.lend(Loan::HandleLock, 9, "", 8);
    ledger.lend(Loan::HandleLock, 9, "", 8);
    EXPECT_TRUE(ledger.giveBack(Loan::HandleLock, 9));
    EXPECT_EQ(ledger.count(Loan::HandleLock, 9), 1);
    EXPECT_TRUE(ledger.giveBack(Loan::HandleLock, 9));
    EXPECT_FALSE(ledger.giveBack(Loan::HandleLock, 9));
    EXPECT_THAT(ledger.outstanding(), IsEmpty());
}

TEST(HostLedger, TellsKindsOfTheSameKeyApart) {
    Ledger ledger;
    ledger.lend(Loan::Handle, 3, "", 4);
    EXPECT_FALSE(ledger.giveBack(Loan::HandleLock, 3));
    EXPECT_EQ(ledger.count(Loan::Handle), 1);
    EXPECT_EQ(ledger.count(Loan::HandleLock), 0);
}

TEST(HostLedger, KeepsAnObjectAsLongAsItsLoan) {
    Ledger ledger;
    auto object = std::make_shared<int>(7);
    ledger.lend(Loan::Path, 1, "Orbit", 1, object);
    EXPECT_EQ(ledger.find(Loan::Path, 1), object);
    EXPECT_EQ(object.use_count(), 2);
    ledger.giveBack(Loan::Path, 1);
    EXPECT_EQ(object.use_count(), 1);
    EXPECT_EQ(ledger.find(Loan::Path, 1), nullptr);
}

TEST(HostLedger, ClosingKeepsHandlesForTheHostAndTakesTheRestBack) {
    Ledger command, host;
    auto object = std::make_shared<int>(7);
    command.lend(Loan::Handle, 1, "", 64);
    command.lend(Loan::Stream, 2, "Angle", 3, object);
    EXPECT_EQ(command.close(host).size(), 2u);
    EXPECT_THAT(command.outstanding(), IsEmpty());
    EXPECT_TRUE(host.holds(Loan::Handle, 1));
    EXPECT_FALSE(host.holds(Loan::Stream, 2));
    EXPECT_EQ(object.use_count(), 1);
}

TEST(HostLedger, MovesALoanWithItsCount) {
    Ledger command, host;
    command.lend(Loan::Handle, 1, "", 64);
    EXPECT_TRUE(command.moveTo(host, Loan::Handle, 1));
    EXPECT_FALSE(command.moveTo(host, Loan::Handle, 1));
    EXPECT_EQ(host.count(Loan::Handle, 1), 1);
}

}  // namespace
}  // namespace TessavoyHost
