/* A whole module in one file: it finds the table that the content browser publishes, and
 * tells the roots of its tree on the host's console.
 *
 * Compiled as a shared library with hidden visibility: vx3_main is all that it exports.
 * It keeps one pointer of the host and nothing of the browser, so that the two may end
 * in any order.
 */
#include "vx3/browser.h"
#include "vx3/entry.h"

#define EXPORTED __attribute__((visibility("default")))

enum { BUILD_NUMBER = 1, NEEDED_VERSION = VX3_HOST_VERSION };

/* Between action 1 and the last action 3; main thread only. */
static const VX3Host* host;
static int32_t loads;

static void AppendLiteral(VX3String* line, const char* words)
{
    VX3String text = { 0 };
    if (host->text->set(&text, words, -1, VX3_ENCODING_PLAIN))
        host->text->insert(line, host->text->length(line), &text);
    host->text->destruct(&text);
}

static void AppendNumber(VX3String* line, int64_t number)
{
    VX3String text = { 0 };
    if (host->text->setInteger(&text, number, 0))
        host->text->insert(line, host->text->length(line), &text);
    host->text->destruct(&text);
}

/* Each node in an out argument carries a reference, which is given back here. */
static int64_t CountChildren(const VX3Browser* browser, VX3Node* parent)
{
    VX3Node* child = NULL;
    int64_t count = 0;
    browser->nodes->getFirstChild(parent, &child);
    while (child) {
        VX3Node* next = NULL;
        browser->links->getNext(child, &next);
        browser->references->release(child);
        child = next;
        count++;
    }
    return count;
}

/* A line such as "file:/ holds 1". */
static void TellRoot(const VX3Browser* browser, VX3Node* root)
{
    VX3String line = { 0 };
    VX3Url url = { 0 };
    if (browser->nodes->getUrl(root, &url, 0))
        host->text->copy(&line, browser->urls->getText(&url));
    AppendLiteral(&line, " holds ");
    AppendNumber(&line, CountChildren(browser, root));
    host->console->line(&line);
    browser->urls->destruct(&url);
    host->text->destruct(&line);
}

/* All modules are up, so whatever is published can be found. */
static void TellRoots(void)
{
    const VX3Browser* browser = host->registry->find(VX3_BROWSER_TABLE, VX3_BROWSER_VERSION, (int32_t)sizeof(VX3Browser));
    VX3String line = { 0 };
    if (!browser) {
        AppendLiteral(&line, "minimalmodule: there is no content browser");
        host->console->line(&line);
        host->text->destruct(&line);
        return;
    }
    VX3Node* root = NULL;
    browser->tree->getRootNode(NULL, &root);
    while (root) {
        VX3Node* next = NULL;
        TellRoot(browser, root);
        browser->links->getNext(root, &next);
        browser->references->release(root);
        root = next;
    }
}

static int32_t Load(const VX3Host* table)
{
    loads++; /* counted whatever the outcome: an action 3 follows each action 1 */
    if (!table || table->version < NEEDED_VERSION)
        return VX3_RESULT_HOST_TOO_OLD;
    host = table;
    return VX3_RESULT_OK;
}

static int32_t End(void)
{
    if (loads > 0 && --loads == 0)
        host = NULL;
    return VX3_RESULT_OK;
}

static int32_t Receive(intptr_t message, void* data)
{
    switch (message) {
    case VX3_MESSAGE_BUILD: *(uint32_t*)data = BUILD_NUMBER; return VX3_RESULT_OK;
    case VX3_MESSAGE_RESOURCES: /* there are none to load */ ((VX3ResourceRequest*)data)->pending = 0; return VX3_RESULT_OK;
    case VX3_MESSAGE_ALL_LOADED: TellRoots(); return VX3_RESULT_OK;
    default: return VX3_RESULT_REFUSED;
    }
}

EXPORTED int32_t vx3_main(int32_t action, void* arg1, void* arg2, void* arg3);

int32_t vx3_main(int32_t action, void* arg1, void* arg2, void* arg3)
{
    switch (action) {
    case VX3_ACTION_LOAD: return Load(arg1);
    case VX3_ACTION_START: return host != NULL;
    case VX3_ACTION_END: return End();
    case VX3_ACTION_VERSION: return VX3_ENTRY_VERSION;
    case VX3_ACTION_MESSAGE: return host ? Receive((intptr_t)arg1, arg2) : VX3_RESULT_REFUSED;
    default: return VX3_RESULT_REFUSED;
    }
}
