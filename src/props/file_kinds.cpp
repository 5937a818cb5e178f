#include "props/file_kinds.h"

#include <array>

namespace kelvane {
namespace {

// Extensions with their dots, a space after each, so that a search for ".ext " finds whole ones only.
struct Sort {
    FileSort sort;
    std::u16string_view extensions;
};

constexpr std::array sorts = {
    Sort{{u"music", u"Music"},
         u".mp3 .flac .ogg .oga .opus .m4a .m4b .aac .wav .wma .aif .aiff .aifc .ape .wv .mka .mpc .mid .midi .ac3 "
         u".dts .amr .au .tta "},
    Sort{{u"video", u"Video"},
         u".mp4 .m4v .mkv .avi .mov .wmv .mpg .mpeg .webm .flv .ogv .3gp .3g2 .ts .m2ts .mts .vob .asf .divx .rm "
         u".rmvb "},
    Sort{{u"picture", u"Picture"},
         u".jpg .jpeg .jpe .jfif .png .gif .bmp .dib .tif .tiff .webp .heic .heif .avif .jxl .svg .ico .psd .xcf .tga "
         u".jp2 .cr2 .cr3 .nef .arw .orf .rw2 .dng .raf .pef .srw "},
    Sort{{u"document", u"Document"},
         u".pdf .doc .docx .docm .dot .dotx .odt .ott .rtf .txt .md .tex .xls .xlsx .xlsm .ods .ots .csv .ppt .pptx "
         u".pps .ppsx .odp .otp .odg .epub .mobi .azw .azw3 .fb2 .djvu .djv .ps .xps .oxps .html .htm .xhtml .xml "},
    Sort{{u"email", u"E-mail"}, u".eml .msg .mbox .emlx "},
    Sort{{u"contact", u"Contact"}, u".vcf .contact "},
    Sort{{u"calendar", u"Calendar"}, u".ics .vcs "},
    Sort{{u"playlist", u"Playlist"}, u".m3u .m3u8 .pls .wpl .xspf .asx "},
    Sort{{u"link", u"Link"}, u".lnk .url .desktop .webloc "},
    Sort{{u"program", u"Program"}, u".exe .com .bat .cmd .msi .appimage .deb .rpm .jar "},
};

}  // namespace

FileSort fileKind(bool folder, std::u16string_view itemType) noexcept
{
    if (folder)
        return {u"folder", u"Folder"};
    if (itemType.size() < 2 || itemType.find(u' ') != std::u16string_view::npos)
        return {};
    for (const Sort& sort : sorts)
        for (auto at = sort.extensions.find(itemType); at != std::u16string_view::npos;
             at = sort.extensions.find(itemType, at + 1))
            if (sort.extensions[at + itemType.size()] == u' ')
                return sort.sort;
    return {};
}

}  // namespace kelvane
