// The content types that are told by data alone; filetypeplugin.h says what a row means.
//
// The order of extensions is that of the lookup and of the list of type names. A type
// whose specific kinds have no names of their own gives its general one for each.
#pragma once

#include "plugins/filetypeplugin.h"
#include "services/resources.h"

namespace browser {

// Numbers of texts in res/strings. A type has the plural; the type column shows the singular.
namespace TypeTexts {
enum : int32_t {
    Scene = 10283,
    NativeScene = 10284,
    FbxScene = 10285,
    LwsScene = 10286,
    LwoScene = 10287,
    StlScene = 10288,
    VrmlScene = 10289,
    Q3dScene = 10290,
    ThreeDsScene = 10291,
    Image = 10293,
    BitmapImage = 10294,
    PaintImage = 10295,
    PictImage = 10296,
    PngImage = 10297,
    JpegImage = 10298,
    Jpeg2000Image = 10299,
    QtifImage = 10300,
    RgbImage = 10301,
    TargaImage = 10302,
    TiffImage = 10303,
    PsdImage = 10304,
    IffImage = 10305,
    GifImage = 10306,
    B3dImage = 10307,
    FpxImage = 10308,
    XbmImage = 10309,
    ExrImage = 10310,
    Sounds = 10311,
    Sound = 10312,
    AiffSound = 10313,
    AuSound = 10314,
    Mp2Sound = 10315,
    Mp3Sound = 10316,
    M4aSound = 10317,
    M4pSound = 10318,
    WmaSound = 10319,
    WaveSound = 10320,
    TonicFiles = 10321,
    TonicFile = 10322,
    CofFile = 10323,
    CobFile = 10324,
    Layouts = 10325,
    Layout = 10326,
    Scenes = 10330,
    Folders = 10337,
    Folder = 10338,
    UnknownFiles = 10339,
    Movies = 10349,
    Movie = 10350,
    Categories = 10351,
    Category = 10352,
    Images = 10355,
    Scripts = 10362,
    Script = 10363,
};
}

inline constexpr FileExtension imageExtensions[] = {
    { "bmp", TypeTexts::BitmapImage },   { "pntg", TypeTexts::PaintImage },   { "pnt", TypeTexts::PaintImage },
    { "mac", TypeTexts::PaintImage },    { "pict", TypeTexts::PictImage },    { "pic", TypeTexts::PictImage },
    { "pct", TypeTexts::PictImage },     { "png", TypeTexts::PngImage },      { "jpeg", TypeTexts::JpegImage },
    { "jpe", TypeTexts::JpegImage },     { "jpg", TypeTexts::JpegImage },     { "jfif", TypeTexts::JpegImage },
    { "jif", TypeTexts::JpegImage },     { "jp2", TypeTexts::Jpeg2000Image }, { "jpf", TypeTexts::Jpeg2000Image },
    { "jpm", TypeTexts::Jpeg2000Image }, { "qtif", TypeTexts::QtifImage },    { "qti", TypeTexts::QtifImage },
    { "sgi", TypeTexts::RgbImage },      { "rgb", TypeTexts::RgbImage },      { "targa", TypeTexts::TargaImage },
    { "tga", TypeTexts::TargaImage },    { "tif", TypeTexts::TiffImage },     { "tiff", TypeTexts::TiffImage },
    { "b3d", TypeTexts::B3dImage },      { "psd", TypeTexts::PsdImage },      { "gif", TypeTexts::GifImage },
    { "iff", TypeTexts::IffImage },      { "fpx", TypeTexts::FpxImage },      { "xbm", TypeTexts::XbmImage },
    { "xpm", TypeTexts::XbmImage },      { "exr", TypeTexts::ExrImage },
};
inline constexpr FileType imageFiles = {
    .typeId = 1018021,
    .nameText = TypeTexts::Images,
    .generalText = TypeTexts::Image,
    .icon = Icon::Image,
    .extensions = imageExtensions,
    .classBit = VX3_CLASS_IMAGE,
};

inline constexpr FileExtension sceneExtensions[] = {
    { "vx3", TypeTexts::NativeScene },  { "fbx", TypeTexts::FbxScene },   { "lws", TypeTexts::LwsScene },  { "lwo", TypeTexts::LwoScene },
    { "stl", TypeTexts::StlScene },     { "vrml", TypeTexts::VrmlScene }, { "vrm", TypeTexts::VrmlScene }, { "q3d", TypeTexts::Q3dScene },
    { "3ds", TypeTexts::ThreeDsScene }, { "wrl", TypeTexts::VrmlScene },
};
// Parts of scenes, which begin as scenes do.
inline constexpr const char* notScenes[] = { "vwvx", "acvx" };
inline constexpr FileType sceneFiles = {
    .typeId = 1018023,
    .nameText = TypeTexts::Scenes,
    .generalText = TypeTexts::Scene,
    .icon = Icon::Scene,
    .extensions = sceneExtensions,
    .classBit = VX3_CLASS_SCENE,
    .classifyFlags = VX3_CLASSIFY_FOREIGN_SCENES | VX3_CLASSIFY_HEADER_ONLY,
    .refusedByBytes = notScenes,
};

inline constexpr FileExtension movieExtensions[] = {
    { "mpg", TypeTexts::Movie }, { "mpeg", TypeTexts::Movie }, { "mp4", TypeTexts::Movie }, { "mpg4", TypeTexts::Movie },
    { "qt", TypeTexts::Movie },  { "mov", TypeTexts::Movie },  { "smi", TypeTexts::Movie }, { "smil", TypeTexts::Movie },
    { "sml", TypeTexts::Movie }, { "avi", TypeTexts::Movie },  { "wfv", TypeTexts::Movie }, { "fli", TypeTexts::Movie },
    { "swf", TypeTexts::Movie }, { "flc", TypeTexts::Movie },  { "m1s", TypeTexts::Movie }, { "m1v", TypeTexts::Movie },
    { "m1a", TypeTexts::Movie }, { "m75", TypeTexts::Movie },  { "m15", TypeTexts::Movie }, { "mp2", TypeTexts::Movie },
    { "mpm", TypeTexts::Movie }, { "mpv", TypeTexts::Movie },  { "mpa", TypeTexts::Movie }, { "sdv", TypeTexts::Movie },
    { "dv", TypeTexts::Movie },  { "dif", TypeTexts::Movie },  { "3gp", TypeTexts::Movie }, { "3gpp", TypeTexts::Movie },
    { "3g2", TypeTexts::Movie }, { "3gp2", TypeTexts::Movie }, { "m4v", TypeTexts::Movie }, { "qt", TypeTexts::Movie },
    { "qtl", TypeTexts::Movie }, { "amc", TypeTexts::Movie },  { "flv", TypeTexts::Movie },
};
inline constexpr FileType movieFiles = {
    .typeId = 1018022,
    .nameText = TypeTexts::Movies,
    .generalText = TypeTexts::Movie,
    .icon = Icon::Movie,
    .extensions = movieExtensions,
    .classBit = VX3_CLASS_MOVIE,
};

inline constexpr FileExtension scriptExtensions[] = {
    { "csc", TypeTexts::Script },
};
inline constexpr FileType scriptFiles = {
    .typeId = 1018762,
    .nameText = TypeTexts::Scripts,
    .generalText = TypeTexts::Script,
    .icon = Icon::Scripts,
    .extensions = scriptExtensions,
    .classBit = VX3_CLASS_SCRIPT,
};

inline constexpr FileExtension soundExtensions[] = {
    { "aif", TypeTexts::AiffSound }, { "aiff", TypeTexts::AiffSound }, { "aifc", TypeTexts::AiffSound }, { "au", TypeTexts::AuSound },
    { "mp2", TypeTexts::Mp2Sound },  { "mp3", TypeTexts::Mp3Sound },   { "m4a", TypeTexts::M4aSound },   { "m4p", TypeTexts::M4pSound },
    { "wma", TypeTexts::WmaSound },  { "wav", TypeTexts::WaveSound },  { "wave", TypeTexts::WaveSound },
};
inline constexpr FileType soundFiles = {
    .typeId = 1018114,
    .nameText = TypeTexts::Sounds,
    .generalText = TypeTexts::Sound,
    .icon = Icon::Audio,
    .extensions = soundExtensions,
    .classBit = VX3_CLASS_SOUND,
};

inline constexpr FileExtension tonicExtensions[] = {
    { "cof", TypeTexts::CofFile },
    { "cob", TypeTexts::CobFile },
};
inline constexpr FileType tonicFiles = {
    .typeId = 1018115,
    .nameText = TypeTexts::TonicFiles,
    .generalText = TypeTexts::TonicFile,
    .icon = Icon::Tonic,
    .extensions = tonicExtensions,
    .classBit = VX3_CLASS_TONIC,
};

inline constexpr FileExtension layoutExtensions[] = {
    { "lvx", TypeTexts::Layout },
};
inline constexpr FileType layoutFiles = {
    .typeId = 1018116,
    .nameText = TypeTexts::Layouts,
    .generalText = TypeTexts::Layout,
    .icon = Icon::Layout,
    .extensions = layoutExtensions,
    .classBit = VX3_CLASS_LAYOUT,
};

// Types that no file is told by: nodes of these kinds name them.
inline constexpr FileType unknownFileType = {
    .typeId = 1018026,
    .nameText = TypeTexts::UnknownFiles,
    .generalText = Texts::UnknownType,
    .icon = Icon::Document,
};

inline constexpr FileType folderType = {
    .typeId = 1018027,
    .nameText = TypeTexts::Folders,
    .generalText = TypeTexts::Folder,
    .icon = Icon::Folder,
};

inline constexpr FileType categoryType = {
    .typeId = 1018024,
    .nameText = TypeTexts::Categories,
    .generalText = TypeTexts::Category,
    .icon = Icon::Folder,
};

} // namespace browser
