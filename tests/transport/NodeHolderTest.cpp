#include "NodeHolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <vector>

#include "ChildProcess.h"
#include "PortHolders.h"
#include "TemporaryDirectory.h"

namespace velmorindal {
namespace {

class NodeHolderTest : public testing::Test {
  protected:
    const TemporaryDirectory directory;
    const std::string node = directory.path() / "node";
    std::ofstream here{node};
};

class EachNodeHolder : public NodeHolderTest, public testing::WithParamInterface<const char*> {};

TEST_P(EachNodeHolder, IsTheProcessThatHasTheNodeOpen) {
    here.close();
    ASSERT_EQ(findNodeHolder(node), std::nullopt);
    ChildProcess other{
        python("import os\nprint('number', os.getpid(), flush=True)\n" + std::string{GetParam()}, {node})};
    ASSERT_TRUE(other.says("held")) << other.output();
    const auto holder = findNodeHolder(node);
    ASSERT_TRUE(holder);
    EXPECT_TRUE(holder->program.starts_with("python3")) << holder->program;
    EXPECT_NE(other.output().find("number " + std::to_string(holder->process) + "\n"), std::string::npos)
        << other.output();
    other.finish();
    EXPECT_EQ(findNodeHolder(node), std::nullopt);
}

constexpr const char* holdByOpening = R"(
import os, sys
node = os.open(sys.argv[1], os.O_RDWR)
print("held", flush=True)
sys.stdin.read()
)";

INSTANTIATE_TEST_SUITE_P(NodeHolder, EachNodeHolder, testing::Values(holdByLock, holdByOpening),
                         [](const auto& test) {
                             return test.param == holdByLock ? "ByItsLock" : "ByItsDescriptor";
                         });

TEST_F(NodeHolderTest, OfTwoTheOwnerOfTheLockIsNamed) {
    here.close();
    // Processes are looked through in the order of their numbers, which is that of their start but for a
    // wrap.
    std::vector<std::unique_ptr<ChildProcess>> openers;
    for (int count = 0; count < 2; ++count) {
        openers.push_back(std::make_unique<ChildProcess>(python(holdByOpening, {node})));
        ASSERT_TRUE(openers.back()->says("held")) << openers.back()->output();
    }
    const auto withoutLock = findNodeHolder(node);
    ChildProcess locker{python(holdByLock, {node})};
    ASSERT_TRUE(locker.says("held")) << locker.output();
    const auto withLock = findNodeHolder(node);
    ASSERT_TRUE(withoutLock && withLock);
    EXPECT_NE(withLock->process, withoutLock->process);
}

TEST_F(NodeHolderTest, IsThisProcessOnlyWhereThereIsNoOther) {
    ASSERT_TRUE(findNodeHolder(node));
    EXPECT_EQ(findNodeHolder(node)->process, ::getpid());
    ChildProcess other{python(holdByOpening, {node})};
    ASSERT_TRUE(other.says("held")) << other.output();
    EXPECT_NE(findNodeHolder(node)->process, ::getpid());
}

TEST_F(NodeHolderTest, IsCalledByTheNameThatItHasGivenItself) {
    here.close();
    ChildProcess other{
        python("open('/proc/self/comm', 'w').write('modem keeper')\n" + std::string{holdByOpening}, {node})};
    ASSERT_TRUE(other.says("held")) << other.output();

    const auto holder = findNodeHolder(node);

    ASSERT_TRUE(holder);
    EXPECT_EQ(holder->program, "modem keeper");
}

TEST(NodeHolder, OfANodeThatIsMissingNobodyIs) {
    EXPECT_EQ(findNodeHolder("/nowhere/at/all"), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
