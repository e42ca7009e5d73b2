// The content types that are told by data alone; filetypeplugin.h says what a row means.
//
// The order of extensions is that of the lookup and of the list of type names. A type
// whose specific kinds have no names of their own gives its general one for each.
#pragma once

#include "plugins/filetypeplugin.h"
#include "services/resources.h"

namespace browser {

// Numbers of texts in res/strings.
namespace TypeTexts {
enum : int32_t {
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
    LayeredImage = 10304,
    IffImage = 10305,
    GifImage = 10306,
    B3dImage = 10307,
    FpxImage = 10308,
    XbmImage = 10309,
    ExrImage = 10310,
    Sound = 10311,
    Tonic = 10321,
    Layout = 10325,
    Scene = 10330,
    Folder = 10337,
    UnknownFileName = 10339,
    Movie = 10349,
    Category = 10351,
    ImageName = 10355,
    Script = 10362,
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
    { "b3d", TypeTexts::B3dImage },      { "psd", TypeTexts::LayeredImage },  { "gif", TypeTexts::GifImage },
    { "iff", TypeTexts::IffImage },      { "fpx", TypeTexts::FpxImage },      { "xbm", TypeTexts::XbmImage },
    { "xpm", TypeTexts::XbmImage },      { "exr", TypeTexts::ExrImage },
};
inline constexpr FileType imageFiles = {
    .typeId = 1018021,
    .nameText = TypeTexts::ImageName,
    .generalText = TypeTexts::Image,
    .icon = Icon::Image,
    .extensions = imageExtensions,
    .classBit = VX3_CLASS_IMAGE,
};

inline constexpr FileExtension sceneExtensions[] = {
    { "vx3", TypeTexts::Scene }, { "fbx", TypeTexts::Scene },  { "lws", TypeTexts::Scene }, { "lwo", TypeTexts::Scene },
    { "stl", TypeTexts::Scene }, { "vrml", TypeTexts::Scene }, { "vrm", TypeTexts::Scene }, { "q3d", TypeTexts::Scene },
    { "3ds", TypeTexts::Scene }, { "wrl", TypeTexts::Scene },
};
// Parts of scenes, which begin as scenes do.
inline constexpr const char* notScenes[] = { "vwvx", "acvx" };
inline constexpr FileType sceneFiles = {
    .typeId = 1018023,
    .nameText = TypeTexts::Scene,
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
    .nameText = TypeTexts::Movie,
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
    .nameText = TypeTexts::Script,
    .generalText = TypeTexts::Script,
    .icon = Icon::Scripts,
    .extensions = scriptExtensions,
    .classBit = VX3_CLASS_SCRIPT,
};

inline constexpr FileExtension soundExtensions[] = {
    { "aif", TypeTexts::Sound }, { "aiff", TypeTexts::Sound }, { "aifc", TypeTexts::Sound }, { "au", TypeTexts::Sound },
    { "mp2", TypeTexts::Sound }, { "mp3", TypeTexts::Sound },  { "m4a", TypeTexts::Sound },  { "m4p", TypeTexts::Sound },
    { "wma", TypeTexts::Sound }, { "wav", TypeTexts::Sound },  { "wave", TypeTexts::Sound },
};
inline constexpr FileType soundFiles = {
    .typeId = 1018114,
    .nameText = TypeTexts::Sound,
    .generalText = TypeTexts::Sound,
    .icon = Icon::Audio,
    .extensions = soundExtensions,
    .classBit = VX3_CLASS_SOUND,
};

inline constexpr FileExtension tonicExtensions[] = {
    { "cof", TypeTexts::Tonic },
    { "cob", TypeTexts::Tonic },
};
inline constexpr FileType tonicFiles = {
    .typeId = 1018115,
    .nameText = TypeTexts::Tonic,
    .generalText = TypeTexts::Tonic,
    .icon = Icon::Tonic,
    .extensions = tonicExtensions,
    .classBit = VX3_CLASS_TONIC,
};

inline constexpr FileExtension layoutExtensions[] = {
    { "lvx", TypeTexts::Layout },
};
inline constexpr FileType layoutFiles = {
    .typeId = 1018116,
    .nameText = TypeTexts::Layout,
    .generalText = TypeTexts::Layout,
    .icon = Icon::Layout,
    .extensions = layoutExtensions,
    .classBit = VX3_CLASS_LAYOUT,
};

// Types that no file is told by: nodes of these kinds name them.
inline constexpr FileType unknownFileType = {
    .typeId = 1018026,
    .nameText = TypeTexts::UnknownFileName,
    .generalText = Texts::UnknownType,
    .icon = Icon::Document,
};

inline constexpr FileType folderType = {
    .typeId = 1018027,
    .nameText = TypeTexts::Folder,
    .generalText = TypeTexts::Folder,
    .icon = Icon::Folder,
};

inline constexpr FileType categoryType = {
    .typeId = 1018024,
    .nameText = TypeTexts::Category,
    .generalText = TypeTexts::Category,
    .icon = Icon::Folder,
};

} // namespace browser
