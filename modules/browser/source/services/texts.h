// Numbers of the texts in res/strings that the module shows by themselves, without types of content and the
// preference page: those are named in plugins/filetypes.h and res/descriptions.
#pragma once

#include <cstdint>

namespace browser {

namespace Texts {
enum : int32_t {
    ModuleName = 10000,
    OpenWindowHelp = 10001, // of the command OpenWindow
    OpenWindow = 30023,

    // Names of commands. The commands without one borrow those of the context menu and of "Free numbers".
    NewFolder = 10003,
    NewWindow = 10004,
    NewCatalog = 10005,
    NewPresetLibrary = 10006,
    ImportPresetLibrary = 10007,
    RescanFolder = 10010,
    OpenPreferences = 10012,
    CleanCache = 10013,
    ShowAsList = 10015,
    ShowAsIcons = 10016,
    FilterUnknown = 10017,
    FilterKnown = 10018,
    FilterImages = 10019,
    FilterMovies = 10020,
    FilterNativeScenes = 10021,
    FilterOtherScenes = 10022,
    ShowTree = 10023,
    ShowSearchBar = 10024,
    GoBack = 10041,
    GoForward = 10042,
    GoUp = 10043,
    GoToComputer = 10044,
    GoToDesktop = 10045,
    GoToStartLocation = 10046,
    GoToPresets = 10047,
    GoToCatalogs = 10048,
    GoToRecent = 10049,
    GoToSearches = 10050,
    GoToFavourites = 10051,
    ScanLibraries = 10409,

    // Jobs on items: the title of each, its question at a conflict, and its failure.
    CopyTitle = 10197,
    CopyConflict = 10198,
    CopyFailure = 10199,
    MoveTitle = 10200,
    MoveConflict = 10201,
    MoveFailure = 10202,
    DeleteTitle = 10203,
    DeleteConflict = 10204,
    DeleteFailure = 10205,
    ExistingNotDeleted = 10210,

    UnknownPlace = 10216, // of the history
    Computer = 10217,
    Network = 10218,
    Presets = 10219,
    Catalogs = 10220,
    Recent = 10221,
    Search = 10222,
    Favourites = 10223,
    DefaultObjects = 10224,

    // Rows of the context menu.
    MenuOpen = 10225,
    MenuOpenInWindow = 10226,
    MenuShowPicture = 10227,
    MenuGoToOriginal = 10228,
    MenuShowInFileManager = 10230,
    MenuOpenWithSystem = 10232,
    MenuOpenInDocument = 10233,
    MenuSearchHere = 10234,
    MenuView = 10235,
    MenuAsIcons = 10236,
    MenuAsList = 10237,
    MenuNewFolder = 10238,
    MenuRename = 10239,
    MenuDelete = 10240,
    MenuRebuildPreviews = 10242,
    MenuChoosePreview = 10243,
    MenuCopy = 10247,
    MenuPaste = 10248,
    MenuFullWindow = 10249,
    MenuCompactWindow = 10250,
    MenuGoUp = 10251,
    MenuSingleClick = 10274,
    MenuAddToFavourites = 10275,
    MenuRepairLinks = 10276,
    LinksNotRepaired = 10277,
    NewFolderName = 10246,

    // Preview pane. ImageValuePrefix stands in front of width, height and depth.
    PicturePage = 10254,
    InformationPage = 10255,
    KeywordPage = 10256,
    TypeLabel = 10259,
    SizeLabel = 10260,
    CreatedLabel = 10261,
    ModifiedLabel = 10262,
    NameLabel = 10263,
    AnnotationLabel = 10264,
    ImageSizeLabel = 10265,
    ImageDepthLabel = 10266,
    UnknownValue = 10273,
    ImageValuePrefix = 30020,

    NativeSceneType = 10284,
    UnknownType = 10340,

    NameExists = 10364,
    NameChanged = 10365,
    FolderNotCreated = 10366,
    NameNotAllowed = 10369,
    DamagedLibraries = 10407, // their names follow

    // Search: kinds of a row, what a row does, and modes, each from its first.
    RowName = 10382,
    RowKeywords = 10383,
    RowAnnotation = 10384,
    RowSize = 10385,
    RowModified = 10386,
    RowCreated = 10387,
    RowType = 10388,
    AddRow = 10390,
    RemoveRow = 10391,
    TextModes = 10392, // contains, begins with, ends with, is
    DateModes = 10396, // after, before, exactly
    SizeModes = 10399, // at least, at most
    StartSearch = 10410,
    StopSearch = 10411,
    ResultAnnotation = 10415, // place, date and criteria follow

    // Free numbers, from 12000 on. The preference page has the first of them.
    FileMenu = 12020,
    EditMenu = 12021,
    ViewMenu = 12022,
    GoMenu = 12023,
    SortMenu = 12024,
    SortBase = 12030, // and the sort mode, from 1 on: name, modified, created, size, type, unsorted
    SortByName = 12031,
    SortByModified = 12032,
    SortByCreated = 12033,
    SortBySize = 12034,
    SortByType = 12035,
    SortByNothing = 12036,
    GoToDocuments = 12040,
    GoToLastPlace = 12041,
    OpenFolderInWindow = 12042,
    SelectAll = 12043,
    SelectNone = 12044,
    InvertSelection = 12045,
    MenuAssignPath = 12046,
    MenuMountLibrary = 12047,
    MenuUnmountLibrary = 12048,
    IconSize = 12050,
    SmallestIcons = 12051,
    LargestIcons = 12052,
    StopWork = 12053,
    NewName = 12054,
    Cancel = 12055,
    Stop = 12056,
    EmptyFolder = 12060,
    OneEntry = 12061,
    EntryCount = 12062,    // %1 entries
    SelectedCount = 12063, // %1 of %2
    Kilobytes = 12070,
    SearchIn = 12071,
    IncludeSubfolders = 12072,
    NoFileManager = 12080, // for %1
    NoProgram = 12081,     // for %1
    BackTip = 12082,
    ForwardTip = 12083,

    // Help of a command: its place in the order of registration, from 1 on, behind this number. OpenWindow has its own.
    CommandHelpBase = 12200,
};
}

} // namespace browser
