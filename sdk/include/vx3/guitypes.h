/* What the tables of the GUI section share: handles, messages, input, colours. */
#ifndef VX3_GUITYPES_H
#define VX3_GUITYPES_H

#include "types.h"

typedef uint64_t VX3Dialog; /* a window, a modal dialog or a dialog inside another; 0 is none */
typedef uint64_t VX3Area;   /* a surface that the module draws; 0 is none */
typedef uint64_t VX3Canvas; /* where to draw: an area, or what a callback is given */

/* Both corners belong to it. */
typedef struct VX3Rectangle {
    int32_t x1;
    int32_t y1;
    int32_t x2;
    int32_t y2;
} VX3Rectangle;

/* Messages to dialogs and areas: four characters, or a number. The message container
 * has the code as its id. In brackets, who gets it: A the area, P the dialog around it (a
 * sub-dialog or a window), W the window. */
enum {
    VX3_GUI_FOCUS_GOT = 0x62474643,       /* 'bGFC' a gadget in it got the focus [A P W] */
    VX3_GUI_FOCUS_LOST = 0x624C4643,      /* 'bLFC' [A P W] */
    VX3_GUI_KEY = 0x6249504E,             /* 'bIPN' a key that nobody consumed; an input event. 1: consumed [W] */
    VX3_GUI_WEIGHTS = 0x77436867,         /* 'wChg' the user moved a splitter; VX3_KEY_GADGET [P] */
    VX3_GUI_WINDOW_SIZE = 0x6641444A,     /* 'fADJ' new size of the window under the keys 3 and 4 [W] */
    VX3_GUI_HIDING = 0x76697346,          /* 'visF' about to be hidden or closed [P W] */
    VX3_GUI_NAME = 0x63696E66,            /* 'cinf' set the name of the dialog's kind in the result, under 1: see below [W] */
    VX3_GUI_INTERACTION = 0x696E7461,     /* 'inta' the user begins to change something [P] */
    VX3_GUI_INTERACTION_END = 0x696E7465, /* 'inte' [P] */
    VX3_GUI_LAYOUT_RESTORE = 0x6C617973,  /* 'lays' what a saved layout holds of this window: see below [W] */
    VX3_GUI_LAYOUT_SAVE = 0x6C617967,     /* 'layg' set it in the result [W] */
    VX3_GUI_SCROLLED = 0x73637273,        /* 'scrs' a scroll group shows another part [A P] */
    VX3_GUI_RESIZED = 0x62495349,         /* 'bISI' a size settled [A P] */
    VX3_GUI_LAYOUT_DONE = 0x664C4159,     /* 'fLAY' never sent by a host: for a module to post to itself */
    VX3_GUI_DRAG = 10003                  /* a drag is over it, dropped or ended: guimenu.h [P] */
};

/* Keys of messages. A saved layout of a window is a container under the key
 * VX3_GUI_LAYOUT_RESTORE, and in it under the window's id what the module stores. VX3_GUI_NAME
 * is sent before a layout is saved and before a window is restored, also while it is closed:
 * what was saved comes back only into a window of the same name. */
enum { VX3_KEY_GADGET = 1, VX3_KEY_NAME = 1, VX3_KEY_WINDOW_WIDTH = 3, VX3_KEY_WINDOW_HEIGHT = 4 };

/* Keys of a core message as a dialog receives it (message.h): the two values as int64,
 * the container if there is one, and an int32 that is never 0 and rises with each
 * message, the same in every dialog. */
enum {
    VX3_CORE_FIRST = 0x4D636931,     /* 'Mci1' */
    VX3_CORE_SECOND = 0x4D636932,    /* 'Mci2' */
    VX3_CORE_CONTAINER = 0x4D636263, /* 'Mcbc' */
    VX3_CORE_UNIQUE = 0x4D756964     /* 'Muid' */
};

/* Keys of an input event, all int32 but the text. */
enum {
    VX3_INPUT_DEVICE = 1,  /* VX3_DEVICE value */
    VX3_INPUT_CHANNEL = 2, /* of the mouse: a VX3_CHANNEL value; of the keyboard: a VX3_KEY value, or a UTF-16 unit in upper case */
    VX3_INPUT_VALUE = 3,   /* 1 pressed; of the wheel: 120 for each notch, positive away from the user */
    VX3_INPUT_X = 4,       /* of the mouse, in the area */
    VX3_INPUT_Y = 5,
    VX3_INPUT_QUALIFIERS = 6, /* VX3_QUALIFIER bits */
    VX3_INPUT_DOUBLE = 7,     /* 1: the second press of a double click */
    VX3_INPUT_TEXT = 8        /* what a key writes; absent if nothing */
};
enum { VX3_DEVICE_MOUSE = 1, VX3_DEVICE_KEYBOARD = 2 };
enum {
    VX3_CHANNEL_LEFT = 1,
    VX3_CHANNEL_RIGHT = 2,
    VX3_CHANNEL_MIDDLE = 3,
    VX3_CHANNEL_BACK = 5,
    VX3_CHANNEL_FORWARD = 6,
    VX3_CHANNEL_WHEEL = 7
};
enum { VX3_QUALIFIER_SHIFT = 1, VX3_QUALIFIER_CTRL = 2, VX3_QUALIFIER_ALT = 4 };
enum {
    VX3_KEY_BACKSPACE = 0xF108,
    VX3_KEY_TAB = 0xF109,
    VX3_KEY_ENTER = 0xF10D,
    VX3_KEY_ESCAPE = 0xF11B,
    VX3_KEY_SPACE = 0xF120,
    VX3_KEY_DELETE = 0xF17F,
    VX3_KEY_UP = 0xF180,
    VX3_KEY_DOWN = 0xF181,
    VX3_KEY_LEFT = 0xF182,
    VX3_KEY_RIGHT = 0xF183,
    VX3_KEY_PAGE_UP = 0xF184,
    VX3_KEY_PAGE_DOWN = 0xF185,
    VX3_KEY_HOME = 0xF186,
    VX3_KEY_END = 0xF187,
    VX3_KEY_F1 = 0xF190 /* and so on to F12 */
};

/* Colours by number, from the user's palette. Any other number is none, and black. */
enum {
    VX3_COLOUR_BACKGROUND = 1000,
    VX3_COLOUR_TEXT = 1215,
    VX3_COLOUR_SELECTION = 1216,               /* background of what is selected, with the focus */
    VX3_COLOUR_SELECTION_UNFOCUSED = 1217,     /* and without */
    VX3_COLOUR_SELECTED_TEXT = 1218,           /* text on 1216 */
    VX3_COLOUR_SELECTED_TEXT_UNFOCUSED = 1219, /* text on 1217 */
    VX3_COLOUR_SPECIAL_TEXT = 1220             /* text of what stands out; readable on 1000, 1216 and 1217 */
};

/* Pointer shapes. */
enum { VX3_CURSOR_NORMAL = 2, VX3_CURSOR_BUSY = 3, VX3_CURSOR_REFUSED = 8, VX3_CURSOR_COPY = 10, VX3_CURSOR_ACCEPT = 13 };

VX3_STATIC_ASSERT(sizeof(VX3Rectangle) == 16, "VX3Rectangle is 16 bytes");

#endif
