// The log tree: where each channel goes, what the nodes say, and finding nodes again.
#include <gtest/gtest.h>

#include "support/log_machinery.h"

namespace corvina::test {
namespace {

class Trees : public ::testing::Test, public StoreMachinery {
  protected:
    void AddChannels(std::initializer_list<const wchar_t*> paths) {
        for (const wchar_t* path : paths) {
            ASSERT_TRUE(Files.AddLog(L"localhost", path, NumberedEvents(2)));
        }
    }

    // The tree below a node as text: captions, with the children of a folder in brackets.
    std::wstring Outline(NodeId node) const {
        const LogTreeNode& place = *Logic->Tree.Find(node);
        std::wstring text = place.Caption;
        if (!place.Children.empty()) {
            text += L"[";
            for (const NodeId child : place.Children) {
                text += (child == place.Children.front() ? L"" : L"; ") + Outline(child);
            }
            text += L"]";
        }
        return text;
    }
    std::wstring Outline(std::wstring_view path) const { return Outline(Logic->Tree.FindByPath(path)); }
};

TEST_F(Trees, FixedFoldersStandInTheirOrderAndAreExpanded) {
    AddChannels({L"Application"});
    Settings.Set(SavedLogsSection, L"June", L"june.evtx");
    LogMachinery& logic = Start();
    ASSERT_EQ(logic.Tree.Roots().size(), 1U);
    const NodeId root = logic.Tree.Roots()[0];
    EXPECT_EQ(Outline(root),
              L"TESTPC[Extras[Merge All Channels; Administrative Events]; Custom View; Saved Logs[June]; "
              L"Windows Logs[Application (2)]; Application and Service Logs[Microsoft[Windows]]]");
    EXPECT_EQ(logic.Tree.Selected(), root);
    EXPECT_EQ(TreeView.Expanded.size(), 6U);
    EXPECT_EQ(View.ListCaption, L"TESTPC");
    EXPECT_EQ(View.Clears, 1);
    const LogTreeNode& leaf = *logic.Tree.Find(logic.Tree.FindByPath(L"Windows Logs/Application"));
    EXPECT_EQ(leaf.Icon, NodeIcon::Log);
    EXPECT_EQ(logic.Channels.Find(0, leaf.ChannelIndex)->Path, L"Application");
    EXPECT_EQ(logic.Tree.Find(leaf.Parent)->ChannelIndex, -1);
}

TEST_F(Trees, ChannelsAreGroupedByThePartsOfTheirPaths) {
    AddChannels({L"Security", L"ForwardedEvents", L"security2", L"HardwareEvents", L"Contoso/Admin/Deep",
                 L"Microsoft-Windows-Kernel-Power/Thermal-Operational", L"Microsoft-Windows-Foo/Operational",
                 L"Microsoft-Windows-Foo/Admin", L"Vendor-App/Log", L"Vendor-Tool", L"Vendor-/X", L"Vendor-A-/X",
                 L"Other-A-B/-"});
    LogMachinery& logic = Start();
    EXPECT_EQ(Outline(L"Windows Logs"), L"Windows Logs[ForwardedEvents (2); Security (2)]");
    const std::wstring applications = Outline(L"Application and Service Logs");
    EXPECT_NE(applications.find(L"Microsoft[Windows[Foo[Admin (2); Operational (2)]; Kernel-Power[Thermal-Operational "
                                L"(2)]]]"),
              std::wstring::npos)
        << std::string(applications.begin(), applications.end());
    for (const wchar_t* part : {L"HardwareEvents (2)", L"security2 (2)", L"Contoso[Admin/Deep (2)]",
                                L"Other[A[B[- (2)]]]", L"Vendor[A[[X (2)]]]"}) {
        EXPECT_NE(applications.find(part), std::wstring::npos) << std::string(part, part + std::wcslen(part));
    }
    EXPECT_EQ(applications.find(L"App"), 0U) << "no node for a path that does not split: only the folder's own name";
    EXPECT_EQ(applications.find(L"Tool"), std::wstring::npos);
    EXPECT_EQ(logic.Channels.Of(0).size(), 13U) << "but they stay in the list";

    EXPECT_EQ(logic.Tree.FindByPath(L"Application and Service Logs/Contoso/Admin/Deep"),
              logic.Tree.FindChildByCaption(logic.Tree.FindByPath(L"Application and Service Logs/Contoso"),
                                            L"Admin/Deep (2)"));
    EXPECT_EQ(logic.Tree.FindByPath(L"Windows Logs/security"), NodeId::None) << "names are compared exactly";
    EXPECT_EQ(logic.Tree.FindByPath(L""), NodeId::None);
    EXPECT_EQ(logic.Tree.FindByPath(L"Windows Logs/"), NodeId::None);
}

TEST_F(Trees, ChannelThatCannotBeReadIsLeftOut) {
    AddChannels({L"Application", L"Setup", L"System"});
    Start();
    const std::size_t configs = Api->Calls(Operation::OpenChannelConfig);
    ASSERT_EQ(configs, 3U);
    Api->FailCall(Operation::OpenChannelConfig, configs + 1, 5);
    // The reading of a channel ends at a failure; without the first property it does not count as enabled.
    Api->FailCall(Operation::GetChannelConfigProperty, Api->Calls(Operation::GetChannelConfigProperty) + 1, 6);
    Api->FailCall(Operation::GetLogInfo, Api->Calls(Operation::GetLogInfo) + 1, 6);
    Logic->Builder.BuildLocalTree(L"TESTPC");
    EXPECT_EQ(Outline(L"Windows Logs"), L"Windows Logs[System (0)]");
    EXPECT_TRUE(Debug.Has(L"EvtOpenChannelConfig failed with 5.\n"));
    EXPECT_TRUE(Debug.Has(L"EvtGetChannelConfigProperty failed with 6\n"));
    EXPECT_EQ(TreeView.Captions.size(), 11U) << "the view was cleared with the tree";
}

TEST_F(Trees, UnreadableEventLogStillGivesTheComputersFolders) {
    const std::filesystem::path nothing = Folder.Path() / "nothing";
    Store = std::make_unique<embedded::EmbeddedEventLog>(nothing, L"TESTPC");
    Api = std::make_unique<FailingEventLog>(*Store);
    Api->FailAlways(Operation::OpenSession, 1722);
    Logic = std::make_unique<LogMachinery>(*Api, *this);
    const NodeId root = Logic->Builder.BuildLocalTree(L"TESTPC");
    ASSERT_NE(root, NodeId::None);
    EXPECT_EQ(Logic->Tree.Find(root)->Children.size(), 5U);
    EXPECT_EQ(Boxes.Errors.size(), 2U);
    EXPECT_EQ(End(), 0U);
}

TEST(LogTree, RemovingANodeTakesWhatIsBelowIt) {
    RecordingTreeView view;
    LogTree tree(&view);
    const auto insert = [&](NodeId parent, const wchar_t* caption) {
        LogTreeNode node;
        node.Caption = caption;
        return tree.Insert(parent, node);
    };
    const NodeId root = insert(NodeId::None, L"root");
    const NodeId folder = insert(root, L"folder");
    const NodeId leaf = insert(folder, L"leaf (1)");
    const NodeId other = insert(root, L"other");
    tree.Select(leaf);
    EXPECT_EQ(view.Selected, leaf);
    EXPECT_EQ(tree.RootOf(leaf), root);
    tree.Remove(folder);
    EXPECT_EQ(tree.Find(leaf), nullptr);
    EXPECT_EQ(tree.Selected(), NodeId::None);
    EXPECT_EQ(tree.Find(root)->Children, std::vector<NodeId>{other});
    EXPECT_EQ(tree.RootOf(leaf), NodeId::None);
    EXPECT_EQ(insert(leaf, L"below nothing"), NodeId::None);
    EXPECT_NE(insert(root, L"new"), leaf) << "identifiers are never used again";
    tree.Remove(leaf);
    tree.SetCaption(leaf, L"gone");
    tree.Select(leaf);
    tree.Expand(leaf);
    EXPECT_TRUE(view.Expanded.empty());

    EXPECT_EQ(CaptionBaseName(L"System (12)"), L"System");
    EXPECT_EQ(CaptionBaseName(L" (12)"), L" (12)");
    EXPECT_EQ(CaptionBaseName(L"a (b) (3)"), L"a");
    EXPECT_EQ(CaptionBaseName(L"x(1)"), L"x(1)");
}

}  // namespace
}  // namespace corvina::test
