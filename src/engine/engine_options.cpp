#include "engine/engine_options.h"

#include "base/text_table.h"

namespace kelvane {

std::vector<FileCategory> defaultCategories()
{
    const auto category = [](TextId name, const char* masks) {
        return FileCategory{std::u16string(text(name)), masks};
    };
    return {
        category(TextId::categoryMusic, "mp2,wav,mp3,wma,mpa,cda,snd,aif*,ogg,ac3,m4a,m3u,mid*,flac,mod,au,rmi,cdda"),
        category(TextId::categoryMovies, "wmv,avi,mov,mpg,asx,3gp,mkv,flv,mp4,asf,mts,tts,wvx,m1v,qt,m2ts,mpe*,mpv2"),
        category(TextId::categoryDocuments, "txt,pdf,xls*,ppt*,rtf,doc*,odt,wpd,cpp"),
        category(TextId::categoryPhotos, "bmp,ico,jpg,gif,img,pcx,png,tif,xcf,raw,emf,tga,heic,jpeg"),
        category(TextId::categoryEbooks, "djvu,epub,pdb,azw*,mobi,prc,tpz,dnl,opf,lrf,fb2,fbd,pdf"),
        category(TextId::categoryAll, "*"),
        category(TextId::categoryFolders, "*"),
    };
}

}  // namespace kelvane
