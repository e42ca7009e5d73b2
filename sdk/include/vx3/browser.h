/* The table that the content browser publishes for other modules and for its host.
 *
 * Found with VX3RegistryServices.find(VX3_BROWSER_TABLE, VX3_BROWSER_VERSION,
 * sizeof(VX3Browser)) after action 2 of the browser, and valid until its last action 3.
 * It is laid out once, so that no lock is needed to read it. A section that has nothing
 * behind it yet is none: test the pointer.
 *
 * References. A VX3Node is counted. An argument marked "consumed" is given back
 * whatever the outcome: whoever wants to keep a node calls `addRef` first. A node in an
 * out argument carries a reference, which the caller must free with `release`. A node
 * may outlive its place in the tree: then it has the attribute VX3_NODE_REMOVED and no
 * links.
 *
 * Urls. A VX3Url belongs to one thread at a time and changes itself while it is read.
 * All zero is a valid empty value; `destruct` frees what it holds.
 *
 * While the browser handles VX3_MESSAGE_ENDING no other thread may call.
 *
 * Errors of node operations are bit sets whose top bit means failure: VX3_ERROR below.
 */
#ifndef VX3_BROWSER_H
#define VX3_BROWSER_H

#include "host.h"
#include "librarytools.h"

enum { VX3_BROWSER_TABLE = 1017645, VX3_BROWSER_VERSION = 1000 };

typedef struct VX3Node VX3Node;
typedef struct VX3Plugin VX3Plugin;
typedef struct VX3Preview VX3Preview;
typedef struct VX3PreviewDialog VX3PreviewDialog;

/* The address of anything in the browser: see VX3UrlFunctions. */
typedef struct VX3Url {
    uint32_t flags;
    uint32_t hash;
    VX3Path path;
    VX3String text;
} VX3Url;

/* The data of a drag of the type VX3_DRAG_BROWSER (guimenu.h), borrowed while it goes on. */
typedef struct VX3BrowserDrag {
    int32_t count;
    VX3Node* const* nodes; /* `count` of them */
    const void* source;    /* the pane that it began in: to be compared only, since its window may close meanwhile */
} VX3BrowserDrag;

/* Attribute bits of a node. Links are those of catalogs: a link of the file system shows
 * what it leads to. */
#define VX3_NODE_FOLDER 0x1u
#define VX3_NODE_CONTAINER 0x2u
#define VX3_NODE_BUNDLE 0x4u
#define VX3_NODE_LINK 0x8u
#define VX3_NODE_READONLY 0x10u
#define VX3_NODE_REMOVED 0x40u
#define VX3_NODE_NO_PLUGIN 0x80u
#define VX3_NODE_VOLUME 0x20000u
#define VX3_NODE_DIRTY 0x40000u
#define VX3_NODE_BROKEN_LINK 0x20000000u
#define VX3_NODE_CATEGORY 0x40000000u /* a fixed heading */

/* Flags of `getUrl` and `getPlugin`. */
#define VX3_URL_LINK_TARGET 0x80000000u
#define VX3_PLUGIN_QUICK_TEST 2u

/* Request bits of `getPreview`. */
#define VX3_PREVIEW_OPEN 0x2u        /* the open form of a folder */
#define VX3_PREVIEW_FOR_LINK 0x4000u /* drawn for a link */
#define VX3_PREVIEW_STORED 0x8000u   /* a stored picture may be given */

/* Modes of the change operations. */
enum { VX3_MODE_ASK = 0, VX3_MODE_COUNT = 1, VX3_MODE_DO = 2 };

/* Mode bits of `findNodeByUrl`: the whole URL or none; the deepest node reached, if the
 * whole URL is not there; bring each level up to date before descending. */
enum { VX3_FIND_PLAIN = 1, VX3_FIND_DEEPEST = 2, VX3_FIND_POPULATE = 4 };

/* Results of the change operations. */
#define VX3_ERROR_NONE 0u
#define VX3_ERROR_RENAME 0x80000001u
#define VX3_ERROR_MOVE 0x80000002u
#define VX3_ERROR_COPY 0x80000004u
#define VX3_ERROR_DELETE 0x80000008u
#define VX3_ERROR_NEW_FOLDER 0x80000010u
#define VX3_ERROR_NAME_CLASH 0x80000100u
#define VX3_ERROR_MOVE_FAILED 0x80000200u
#define VX3_ERROR_WRITE_PRESET 0x80000400u
#define VX3_ERROR_WRONG_TYPE 0xA0000000u
#define VX3_ERROR_CANCELLED 0xC0000000u

/* Orders of `sortedChildren`. */
enum { VX3_SORT_NAME = 1, VX3_SORT_MODIFIED = 2, VX3_SORT_CREATED = 3, VX3_SORT_SIZE = 4, VX3_SORT_TYPE = 5, VX3_SORT_NONE = 6 };

/* 0: browser windows; none without a GUI section. */
typedef struct VX3BrowserWindows {
    /* Opens a window on a URL, or on the deepest node of it that is there. 0 if 16 are
     * open. [gui-thread] [may-block] [nested] */
    VX3Bool (*open)(VX3Url* url);
} VX3BrowserWindows;

/* 1: the tree. */
typedef struct VX3TreeFunctions {
    /* The roots by index: 0 presets, 1 catalogs, 2 computer, 3 recent, 4 search,
     * 5 favourites; none for others. [any-thread] */
    void (*getRootByIndex)(int32_t index, VX3Node** root);
    /* The first top node, or the first child of `node`, consumed. [any-thread] [may-block] */
    void (*getRootNode)(VX3Node* node, VX3Node** first);
    /* The node of a URL, or none; from `start`, consumed, or from the roots.
     * [any-thread] [may-block] */
    void (*findNodeByUrl)(VX3Url* url, int32_t mode, VX3Node* start, VX3Node** node);
    /* The node of a "network:/" URL, or none. [any-thread] [may-block] */
    void (*findNetworkNode)(VX3Url* url, VX3Node** node);
    /* Puts a node, consumed, below the root of an index; one that hangs elsewhere leaves
     * its place. 0 for a node that was removed. [gui-thread] */
    VX3Bool (*attachToRoot)(VX3Node* node, int32_t index);
    /* Puts children of one parent behind each other in this order. The nodes are
     * borrowed until the call returns; `reserved` is 0. [any-thread] [may-block] */
    VX3Bool (*reorderChildren)(int32_t reserved, VX3Node* const* nodes, int32_t count);
    /* Tells the views that a node, consumed, has changed. [any-thread] */
    void (*notifyChanged)(VX3Node* node);
    /* Reads the list of volumes again. [any-thread] [may-block] */
    void (*refreshVolumes)(void);
} VX3TreeFunctions;

/* 2: icons and preview objects. */
typedef struct VX3IconFunctions {
    int32_t (*iconCount)(void); /* [any-thread] */
    /* The file name of an icon, a literal; none beyond the count. [any-thread] */
    const char* (*iconFile)(int32_t number);
    /* An icon's picture, borrowed until message VX3_MESSAGE_ENDING; a size below 1
     * gives it as drawn. None if there is no such picture. [gui-thread] [may-block] */
    VX3Bitmap* (*iconBitmap)(int32_t number, int32_t size);
    /* The same as a preview object; the caller must free with `releasePreview`.
     * [gui-thread] [may-block] */
    VX3Preview* (*icon)(int32_t number, int32_t size);
    /* Wraps a bitmap; with `owned` set the object frees it, and it is given away
     * whatever the outcome. Flags: 2 is drawn in the
     * mode 768, 4 is never enlarged. The caller must free with `releasePreview`.
     * [any-thread] */
    VX3Preview* (*makePreview)(VX3Bitmap* bitmap, uint32_t flags, VX3Bool owned);
    VX3Bitmap* (*previewBitmap)(VX3Preview* preview); /* Borrowed until `releasePreview`. [any-thread] */
    uint32_t (*previewFlags)(VX3Preview* preview);    /* [any-thread] */
    void (*releasePreview)(VX3Preview* preview);      /* None is allowed. [any-thread] */
} VX3IconFunctions;

/* 3: libraries of other modules. A library has an id from its opening to its closing: 0 is the
 * browser's own, 1 the user's, which is made when something is first stored in it. */
typedef struct VX3LibraryFunctions {
    /* Opens the library of a file, or makes one with that name and address; an address begins
     * with "preset:/". Payloads go to the folder "data " and the file's name beside it. Gives
     * its id, or -1. [gui-thread] [may-block] */
    int32_t (*registerLibrary)(VX3Url* location, const VX3String* name, const VX3Path* file);
    /* Writes what has changed and closes it; 0 if it is in use or could not be written.
     * [gui-thread] [may-block] */
    VX3Bool (*unregisterLibrary)(int32_t id);
    /* The id of the library that holds an address, or -1. [any-thread] [may-block] */
    int32_t (*libraryId)(VX3Url* url);
} VX3LibraryFunctions;

/* 4: items of libraries. */
typedef struct VX3ItemFunctions {
    VX3Bool (*exists)(VX3Url* url); /* [any-thread] [may-block] */
    /* Any of the out values may be none. `bytes` is none for an item without data; the caller
     * must free it with the memory section. 0: there is no such item.
     * [any-thread] [may-block] */
    VX3Bool (*read)(int32_t libraryId, VX3Url* url, int32_t* type, VX3Container* settings, void** bytes, int64_t* length);
    /* Makes the item or changes it, and dates it. `name` may be none, and `bytes` none to leave
     * the data as they are. 0: the library is not there, is read-only, or could not be written.
     * [any-thread] [may-block] */
    VX3Bool (*store)(int32_t libraryId, VX3Url* url, int32_t type, const VX3String* name, const void* bytes, int64_t length);
} VX3ItemFunctions;

/* 5: plugins for content types, in a fixed order that decides who is asked first. */
typedef struct VX3PluginFunctions {
    /* 0 without memory, and for a plugin that is registered already. */
    VX3Bool (*registerPlugin)(VX3Plugin* plugin, VX3Bool matchFiles); /* [any-thread] */
    void (*unregisterPlugin)(VX3Plugin* plugin);                      /* [any-thread] */
    int32_t (*count)(void);                                           /* [any-thread] */
    VX3Plugin* (*byIndex)(int32_t index);                             /* Borrowed until it is unregistered. [any-thread] */
    VX3Plugin* (*byId)(int32_t typeId);                               /* Borrowed until it is unregistered. [any-thread] */
    /* The plugin for a URL by its extension, or with `deep` by its bytes; `plugin`
     * may be none. [any-thread] [may-block] */
    VX3Bool (*forUrl)(VX3Url* url, VX3Bool deep, VX3Plugin** plugin);
    /* The type id of a plugin, and its name unless `name` is none. [any-thread] */
    int32_t (*typeId)(VX3Plugin* plugin, VX3String* name);
    /* All type names of a plugin as one text, separated by line ends; 0 if there is
     * no memory. [any-thread] */
    VX3Bool (*typeNames)(VX3Plugin* plugin, VX3Bool specific, VX3String* names);
    /* 1 if the plugin takes part in finding the type of files. [any-thread] */
    VX3Bool (*matchesFiles)(VX3Plugin* plugin);
} VX3PluginFunctions;

/* 6: URLs. */
typedef struct VX3UrlFunctions {
    void (*destruct)(VX3Url* url);                                                   /* [any-thread] */
    void (*copy)(VX3Url* to, const VX3Url* from);                                    /* [any-thread] */
    void (*setText)(VX3Url* url, const VX3String* text);                             /* [any-thread] */
    void (*setFile)(VX3Url* url, const VX3Path* path);                               /* [any-thread] */
    void (*setFileAndText)(VX3Url* url, const VX3Path* path, const VX3String* text); /* [any-thread] */
    const VX3String* (*getText)(VX3Url* url);                                        /* Borrowed until the URL is changed. [any-thread] */
    void (*getName)(VX3Url* url, VX3String* name);                                   /* [any-thread] */
    void (*getParent)(VX3Url* url, VX3Url* parent);                                  /* [any-thread] */
    void (*join)(VX3Url* url, const VX3String* name, VX3Url* joined);                /* [any-thread] */
    VX3Bool (*equals)(VX3Url* a, VX3Url* b);                                         /* [any-thread] */
    uint32_t (*getHash)(VX3Url* url);                                                /* [any-thread] */
    void (*setHash)(VX3Url* url, uint32_t hash);                                     /* [any-thread] */
    VX3Bool (*hasFile)(VX3Url* url);                                                 /* [any-thread] [may-block] */
    VX3Bool (*getFile)(VX3Url* url, VX3Path* path);                                  /* [any-thread] [may-block] */
    VX3Bool (*hasExtension)(VX3Url* url, const VX3String* suffix);                   /* [any-thread] [may-block] */
    void (*getExtension)(VX3Url* url, VX3String* suffix);                            /* [any-thread] */
    VX3Bool (*hasContent)(const VX3Url* url);                                        /* [any-thread] */
} VX3UrlFunctions;

/* 7: reference counts. */
typedef struct VX3ReferenceFunctions {
    void (*addRef)(VX3Node* node);             /* [any-thread] */
    void (*release)(VX3Node* node);            /* None is allowed. [any-thread] */
    VX3Bool (*releaseNoDelete)(VX3Node* node); /* 1 if the count fell to 0. [any-thread] */
} VX3ReferenceFunctions;

/* 8: links of the tree. Out nodes are none where there is no link. */
typedef struct VX3LinkFunctions {
    void (*getParent)(VX3Node* node, VX3Node** parent);    /* [any-thread] */
    void (*getNext)(VX3Node* node, VX3Node** next);        /* [any-thread] */
    void (*getPrev)(VX3Node* node, VX3Node** prev);        /* [any-thread] */
    VX3Bool (*insertLast)(VX3Node* node, VX3Node* parent); /* `parent` may be none. [any-thread] */
    void (*insertBefore)(VX3Node* node, VX3Node* sibling); /* [any-thread] */
    void (*detach)(VX3Node* node);                         /* [any-thread] */
    void (*removeChildren)(VX3Node* node);                 /* [any-thread] */
} VX3LinkFunctions;

/* 9: operations of a node, by slot. Slot 0 is the destructor and has no entry. */
typedef struct VX3NodeFunctions {
    void* reserved; /* none */
    /* Lists a folder that is dirty or was never listed. */
    void (*getFirstChild)(VX3Node* node, VX3Node** child);  /* [any-thread] [may-block] */
    void (*getLastChild)(VX3Node* node, VX3Node** child);   /* [any-thread] [may-block] */
    void (*remove)(VX3Node* node);                          /* [any-thread] */
    int32_t (*getNodeType)(VX3Node* node);                  /* [any-thread] */
    VX3Plugin* (*getPlugin)(VX3Node* node, uint32_t flags); /* [any-thread] [may-block] */
    void (*getName)(VX3Node* node, VX3String* name);        /* [any-thread] */
    const VX3String* (*getNameRef)(VX3Node* node);          /* Borrowed until the node is released or renamed. [any-thread] */
    /* Detail 2 asks for the specific kind, as by extension; others for the general one. */
    void (*getTypeName)(VX3Node* node, VX3String* name, int32_t detail); /* [any-thread] [may-block] */
    VX3Bool (*getUrl)(VX3Node* node, VX3Url* url, uint32_t flags);       /* [any-thread] */
    VX3Bool (*getDate)(VX3Node* node, int32_t kind, VX3FileDate* date);  /* [any-thread] */
    uint32_t (*getAttributes)(VX3Node* node, int64_t* size);             /* `size` may be none. [any-thread] */
    VX3Preview* (*getPreview)(VX3Node* node, uint32_t request,
                              int32_t size); /* The caller must free with `releasePreview`. [gui-thread] [may-block] */
    /* Brings the children up to date and gives a generation that changes when they do. */
    int64_t (*populate)(VX3Node* node);                                                           /* [any-thread] [may-block] */
    int32_t (*getContentData)(VX3Node* node, int32_t id, int32_t kind, int32_t sub, void** data); /* [any-thread] [may-block] */
    uint32_t (*rename)(VX3Node* node, int32_t mode, const VX3String* name);                       /* [any-thread] [may-block] */
    uint32_t (*createFolder)(VX3Node* node, int32_t mode, const VX3String* name,
                             VX3Node** folder); /* `folder` may be none. [any-thread] [may-block] */
    uint32_t (*moveInto)(VX3Node* node, VX3Node* source, int32_t mode, VX3ProgressFunction progress,
                         void* user); /* `source` is consumed. [any-thread] [may-block] */
    uint32_t (*copyInto)(VX3Node* node, VX3Node* source, int32_t mode, const VX3String* name, VX3ProgressFunction progress, void* user,
                         uint32_t flags); /* `source` is consumed, `name` may be none. [any-thread] [may-block] */
    /* A progress function of a deletion must not ask this node or its folder for their
     * children: they wait for its end. */
    uint32_t (*deleteContent)(VX3Node* node, int32_t mode, VX3ProgressFunction progress,
                              void* user); /* Deletes what the node stands for. [any-thread] [may-block] */
    void (*updateUrlPrefix)(VX3Node* node, const VX3String* oldPrefix, const VX3String* newPrefix,
                            VX3Bool recursive); /* [any-thread] [may-block] */
} VX3NodeFunctions;

/* What a module supplies for a node of its own; `object` comes first everywhere. */
typedef struct VX3SdkNodeInfo {
    void (*attach)(void* object, VX3Node* node);                                                   /* [any-thread] */
    void (*detach)(void* object);                                                                  /* [any-thread] */
    int32_t (*getNodeType)(void* object);                                                          /* [any-thread] */
    VX3Plugin* (*getPlugin)(void* object, uint32_t flags);                                         /* [any-thread] [may-block] */
    void (*getName)(void* object, VX3String* name);                                                /* [any-thread] */
    VX3Bool (*getUrl)(void* object, VX3Url* url, uint32_t flags);                                  /* [any-thread] */
    VX3Bool (*getDate)(void* object, int32_t kind, VX3FileDate* date);                             /* [any-thread] */
    uint32_t (*getAttributes)(void* object, int64_t* size);                                        /* [any-thread] */
    VX3Preview* (*getPreview)(void* object, uint32_t request, int32_t size);                       /* [gui-thread] [may-block] */
    int64_t (*populate)(void* object);                                                             /* [any-thread] [may-block] */
    int32_t (*getContentData)(void* object, int32_t id, int32_t kind, int32_t sub, void** data);   /* [any-thread] [may-block] */
    uint32_t (*rename)(void* object, int32_t mode, const VX3String* name);                         /* [any-thread] [may-block] */
    uint32_t (*createFolder)(void* object, int32_t mode, const VX3String* name, VX3Node** folder); /* [any-thread] [may-block] */
    uint32_t (*moveInto)(void* object, VX3Node* source, int32_t mode, VX3ProgressFunction progress,
                         void* user); /* [any-thread] [may-block] */
    uint32_t (*copyInto)(void* object, VX3Node* source, int32_t mode, const VX3String* name, VX3ProgressFunction progress, void* user,
                         uint32_t flags);                                                            /* [any-thread] [may-block] */
    uint32_t (*deleteContent)(void* object, int32_t mode, VX3ProgressFunction progress, void* user); /* [any-thread] [may-block] */
    void (*getTypeName)(void* object, VX3String* name, int32_t detail); /* May be none. [any-thread] [may-block] */
} VX3SdkNodeInfo;

/* 10: nodes of other modules. None yet. */
typedef struct VX3SdkNodeFunctions {
    void (*allocSdkNode)(VX3Node** node, void* object, const VX3SdkNodeInfo* info); /* [any-thread] */
    void (*allocCategoryNode)(VX3Node** node, const VX3String* name, const VX3String* url,
                              const VX3Path* image);                                                /* [gui-thread] [may-block] */
    void (*freeSdkNodes)(VX3Node* root, int32_t pluginId);                                          /* `root` is consumed. [any-thread] */
    void* (*getSdkObject)(VX3Node* node, int32_t pluginId);                                         /* [any-thread] */
    int32_t (*getNodeType)(VX3Node* node);                                                          /* [any-thread] */
    VX3Plugin* (*getPlugin)(VX3Node* node, uint32_t flags);                                         /* [any-thread] [may-block] */
    void (*getName)(VX3Node* node, VX3String* name);                                                /* [any-thread] */
    VX3Bool (*getUrl)(VX3Node* node, VX3Url* url, uint32_t flags);                                  /* [any-thread] */
    VX3Bool (*getDate)(VX3Node* node, int32_t kind, VX3FileDate* date);                             /* [any-thread] */
    uint32_t (*getAttributes)(VX3Node* node, int64_t* size);                                        /* [any-thread] */
    VX3Preview* (*getPreview)(VX3Node* node, uint32_t request, int32_t size);                       /* [gui-thread] [may-block] */
    int64_t (*populate)(VX3Node* node);                                                             /* [any-thread] [may-block] */
    int32_t (*getContentData)(VX3Node* node, int32_t id, int32_t kind, int32_t sub, void** data);   /* [any-thread] [may-block] */
    uint32_t (*rename)(VX3Node* node, int32_t mode, const VX3String* name);                         /* [any-thread] [may-block] */
    uint32_t (*createFolder)(VX3Node* node, int32_t mode, const VX3String* name, VX3Node** folder); /* [any-thread] [may-block] */
    uint32_t (*moveInto)(VX3Node* node, VX3Node* source, int32_t mode, VX3ProgressFunction progress,
                         void* user); /* [any-thread] [may-block] */
    uint32_t (*copyInto)(VX3Node* node, VX3Node* source, int32_t mode, const VX3String* name, VX3ProgressFunction progress, void* user,
                         uint32_t flags);                                                             /* [any-thread] [may-block] */
    uint32_t (*deleteContent)(VX3Node* node, int32_t mode, VX3ProgressFunction progress, void* user); /* [any-thread] [may-block] */
    void (*getTypeName)(VX3Node* node, VX3String* name, int32_t detail);                              /* [any-thread] [may-block] */
} VX3SdkNodeFunctions;

/* 11: plugins of other modules. None yet. */
typedef struct VX3SdkPluginFunctions VX3SdkPluginFunctions;

/* 12: the way from a node, consumed, to its plugin. A node without one is treated as
 * a file of unknown type. */
typedef struct VX3DispatchFunctions {
    VX3PreviewDialog* (*createPreviewDialog)(VX3Node* node, uint32_t flags);       /* [gui-thread] */
    int32_t (*closePreviewDialog)(VX3Node* node, VX3PreviewDialog* dialog);        /* [gui-thread] */
    int32_t (*pollPreviewDialog)(VX3Node* node, VX3PreviewDialog* dialog);         /* [gui-thread] */
    VX3Bool (*openItem)(VX3Node* node, VX3Url* url, uint32_t flags);               /* [gui-thread] [may-block] [nested] */
    void (*typeName)(VX3Node* node, VX3Url* url, VX3String* name, int32_t detail); /* [any-thread] [may-block] */
} VX3DispatchFunctions;

/* One setting of the browser. */
typedef struct VX3Preference {
    int32_t key;
    int32_t type;     /* VX3_VALUE_INT32, VX3_VALUE_FLOAT, VX3_VALUE_TEXT or VX3_VALUE_CONTAINER */
    const char* name; /* a word for command lines, a literal */
    double fallback;  /* the default of a number */
    double lowest;    /* the bounds of a number */
    double highest;
} VX3Preference;

/* 13: for tools. Later versions add entries behind; `size` tells how many bytes are there. */
typedef struct VX3ToolFunctions {
    int64_t size;
    /* The children of a folder in an order, as an array of `count` counted nodes,
     * none if there are none, with a count of -1 without memory; `first` is the first
     * child or none, consumed. Smaller, older and
     * earlier ones come first; folders in front where the user wants so. The caller must
     * free with `freeNodes`. [any-thread] [may-block] */
    VX3Node** (*sortedChildren)(int32_t order, VX3Node* first, int32_t* count);
    /* Releases the nodes of such an array and frees it. [any-thread] */
    void (*freeNodes)(VX3Node** nodes);
    /* Negative, 0 or positive in an order; never sets folders in front. [any-thread] [may-block] */
    int32_t (*compareNodes)(int32_t order, VX3Node* a, VX3Node* b);
    /* The deepest node whose URL holds `url` component by component, at last the
     * computer. [any-thread] [may-block] */
    void (*findNearest)(VX3Url* url, VX3Node** node);
    /* Marks a folder so that its next listing reads the disk. [any-thread] */
    void (*markDirty)(VX3Node* node);
    /* The settings from index 0; 0 behind the last. [any-thread] */
    VX3Bool (*preference)(int32_t index, VX3Preference* preference);
    /* Reads a setting as text, clamped as the browser uses it. [gui-thread] */
    VX3Bool (*getPreference)(int32_t key, VX3String* value);
    /* Writes a setting from text; 0 if it is not a value of it or cannot be kept.
     * [gui-thread] */
    VX3Bool (*setPreference)(int32_t key, const VX3String* value);
    /* For scripts. A place is the text of a URL, or of a path that begins with a slash or a
     * drive; a window is its slot from 0 to 15, or -1 for the one in front. Opens a window;
     * an empty place is the start URL. [gui-thread] [may-block] [nested] */
    VX3Bool (*openWindow)(const VX3String* place);
    /* Goes to a place; 0, and nothing done, if it is not there. [gui-thread] [may-block] [nested] */
    VX3Bool (*goTo)(int32_t window, const VX3String* place);
    /* Describes a window in lines: `what` is "list", "history" or "state". 0 for another
     * word, or without such a window. [gui-thread] */
    VX3Bool (*describeWindow)(int32_t window, const char* what, VX3String* text);
    /* Does something wait for the window's next tick? [gui-thread] */
    VX3Bool (*isWorking)(int32_t window);
    const VX3LibraryToolFunctions* libraries; /* library files: librarytools.h */
} VX3ToolFunctions;

/* The published table. */
typedef struct VX3Browser {
    const VX3BrowserWindows* windows;        /* 0, none without windows */
    const VX3TreeFunctions* tree;            /* 1 */
    const VX3IconFunctions* icons;           /* 2 */
    const VX3LibraryFunctions* libraries;    /* 3 */
    const VX3ItemFunctions* items;           /* 4 */
    const VX3PluginFunctions* plugins;       /* 5 */
    const VX3UrlFunctions* urls;             /* 6 */
    const VX3ReferenceFunctions* references; /* 7 */
    const VX3LinkFunctions* links;           /* 8 */
    const VX3NodeFunctions* nodes;           /* 9 */
    const VX3SdkNodeFunctions* sdkNodes;     /* 10, none yet */
    const VX3SdkPluginFunctions* sdkPlugins; /* 11, none yet */
    const VX3DispatchFunctions* dispatch;    /* 12 */
    const VX3ToolFunctions* tools;           /* 13 */
} VX3Browser;

VX3_STATIC_ASSERT(sizeof(VX3Url) == 32, "VX3Url is 32 bytes");
VX3_STATIC_ASSERT(sizeof(VX3NodeFunctions) == 21 * sizeof(void*), "one entry for each slot");
VX3_STATIC_ASSERT(sizeof(VX3SdkNodeInfo) == 17 * sizeof(void*), "one entry for each function");
VX3_STATIC_ASSERT(sizeof(VX3SdkNodeFunctions) == 19 * sizeof(void*), "one entry for each function");
VX3_STATIC_ASSERT(offsetof(VX3ToolFunctions, libraries) == 13 * sizeof(void*), "entries stay where they were");
VX3_STATIC_ASSERT(sizeof(VX3Browser) == 112, "the published table is 112 bytes");
VX3_STATIC_ASSERT(offsetof(VX3Browser, tools) == 104, "tools stand last");

#endif
