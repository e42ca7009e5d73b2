// One window of the browser: where it is, where it has been, and its panes.
//
// All navigation goes through GoTo. The registry owns the object and makes a new one for
// each opening; while its window is closed it holds no nodes, only the URL. Main thread
// only, but for the announcements at the end, which set a flag or post an event and leave
// the rest to the timer.
//
// Callbacks may run inside each other: whatever opens a menu or a box, or goes somewhere,
// may find its window closed when it comes back.
#pragma once

#include <atomic>

#include "services/gedialog.h"
#include "ui/browserhistory.h"
#include "ui/eventring.h"
#include "ui/foldercontentdialog.h"
#include "ui/panewindow.h"

namespace browser {

// How to go somewhere.
struct Going {
    ContentRef select = {};        // stands selected then
    bool force = false;            // reads the folder again
    const String* title = nullptr; // of the window, if it has text
    bool compact = false;
    ViewMode viewMode = ViewMode::Unchanged;
};

class BrowserDialog final : public GeDialog, public PaneWindow
{
public:
    BrowserDialog();
    ~BrowserDialog() override;

    // Going.
    void GoTo(ContentRef node, const Going& going = {}); // none: the root view
    bool GoToUrl(BrowserURL& url);                       // false, and nothing done, if it leads nowhere
    void ShowNode(ContentRef node, ContentRef select) override;
    bool GoBack() override { return Step(BrowserHistory::Direction::Back); }
    bool GoForward() override { return Step(BrowserHistory::Direction::Forward); }
    void GoUp();      // to the parent node
    void GoUpByUrl(); // to the folder of the URL, at last to the root view
    void Rescan();
    void ShowHistoryMenu(BrowserHistory::Direction direction);
    ContentRef GetNode() const { return currentNode; }
    bool CanGoBack() const { return history.CanGoBack(); }
    bool CanGoForward() const { return history.CanGoForward(); }

    // The window.
    bool OpenWindow(int32_t slot);                             // at the stored size
    bool RestoreWindow(int32_t slot, const BrowserURL& start); // it is at the start unless its layout says where
    FolderContentDialog& Pane() { return folderDialog; }
    void OpenInNewWindow(ContentRef node) override;
    void SelectLater(ContentRef child) override;
    void UpdateSelectionPanes(bool force) override;
    bool ActivateGadget(int32_t id) override;
    bool IsSingleClick() const override { return singleClick; }
    void ToggleSingleClick() override { singleClick = !singleClick; }
    bool IsHandling() const { return handling > 0; } // a callback of it is running
    bool HasWork();                                  // something waits for the timer

    // For scripts and tests: list, history, menu or state, a line for each fact. False for another word.
    bool Describe(const char* what, String& text);

    // Announcements. Any thread. A node is compared and not followed; an event for another folder
    // than the one shown is none.
    void NodeChanged(const ContentRef& node);                                    // nothing stays selected
    void NodeChangedWithChild(const ContentRef& child, const RTreeNode* parent); // it stands selected
    void ChildLeft(const ContentRef& child, const RTreeNode* parent);            // it does not any more
    void NodeListChanged(const RTreeNode* node, const RTreeNode* parent);        // compared, not followed

protected:
    bool CreateLayout() override;
    bool InitValues() override;
    bool Command(int32_t id, const BaseContainer& event) override;
    void Timer() override;
    void CoreMessage(int32_t id, const BaseContainer& message) override;
    bool Message(int32_t code, const BaseContainer& message, BaseContainer& result) override;
    void DestroyWindow() override;

    void BeginHandling() override { handling++; }
    void EndHandling() override { handling--; }

private:
    // Going.
    bool Step(BrowserHistory::Direction direction);
    void GoToHistory();
    void SetCurrentNode(ContentRef node);
    void TakeTitle(const Going& going);
    void RememberPlace();
    void ReadAgain();
    void ShowPossibleSteps();
    void GoToPlace(int32_t place);
    void GoToHome();
    void GoToRoot(int32_t index);
    String NameOfRow(const String& url) const;

    bool IsShown(const RTreeNode* node) const; // any thread

    // The timer's steps.
    void DrainEvents();
    bool Select(const NodeRef& node, bool selected, bool& reloaded);
    void LeaveRemovedNode();

    // Layout and menu.
    bool BuildPanes();
    void BuildMenu();
    void ShowSortItem();
    bool IsSortCommand(int32_t id, SortMode& key) const;

    // Messages.
    bool TakeKey(const BaseContainer& message);
    void StoreSize(const BaseContainer& message);
    void RestoreFrom(const BaseContainer& message);
    void SaveInto(BaseContainer& result);
    void GoToStored();
    void TakeFocus();

    BrowserHistory history;
    FolderContentDialog folderDialog;
    EventRing events;
    ContentRef currentNode;
    FileDate currentDate = {};
    BrowserURL currentUrl;
    String title;
    uint32_t lastChangeCount = 0;
    bool panesAreStale = true; // whatever the list's count says
    bool restoreNode = false;  // currentUrl is to be resolved when the window is laid out
    bool layoutLoaded = false; // the window came from a saved layout
    bool fixedUrl = false;     // which gave the URL too: it is not remembered as the last place
    bool compact = false;
    bool singleClick = false;
    bool isWatching = false; // the current node
    bool wasClosed = false;  // and takes no node any more
    int32_t handling = 0;

    // Each only says that something happened, and the timer looks what. A change that is lost
    // is told by the next one.
    std::atomic<const RTreeNode*> announcedFor = nullptr; // what is shown: a node, the tree for the root view, or none
    std::atomic<bool> reloadAll = false;
    std::atomic<bool> reloadPane = false;
};

} // namespace browser
