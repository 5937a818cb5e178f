#include "text/format_plain_text.h"

#include <algorithm>

#include "text/stream_reading.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

constexpr std::uint64_t mostBytesOfUnit = 4;
constexpr std::size_t headLength = 4096;

constexpr std::string_view textMasks = "txt,text,asc,ascii,utf8,me,1st,nfo,diz,readme,changes,news,faq,lst,out,err";

constexpr std::string_view sourceMasks =
    "log,md,mkd,markdown,rst,adoc,asciidoc,textile,org,wiki,mediawiki,creole,pod,rdoc,tex,latex,ltx,sty,cls,bib,"
    "texi,texinfo,roff,man,mdoc,ms,1,2,3,4,5,6,7,8,csv,tsv,tab,psv,vcf,vcard,ics,ical,ldif,abc,ly,fountain,"
    "c,h,cc,cp,cpp,cxx,c++,hh,hpp,hxx,h++,inl,inc,ipp,tcc,tpp,ixx,cppm,m,mm,cs,csx,vb,vbs,bas,frm,fs,fsi,fsx,"
    "java,kt,kts,scala,sc,groovy,gradle,clj,cljs,cljc,edn,js,mjs,cjs,jsx,ts,mts,cts,tsx,coffee,vue,svelte,astro,"
    "py,pyi,pyw,pyx,pxd,rb,rbw,rake,gemspec,erb,pl,pm,t,raku,php,php3,php4,php5,phtml,lua,tcl,tk,r,rmd,jl,"
    "go,rs,swift,d,di,zig,nim,v,vh,sv,svh,vhd,vhdl,ada,adb,ads,pas,pp,dpr,dpk,lpr,f,for,f77,f90,f95,f03,f08,cob,cbl,"
    "hs,lhs,elm,ml,mli,mll,mly,re,rei,erl,hrl,ex,exs,lisp,lsp,cl,el,scm,ss,rkt,pro,prolog,dart,hx,as,asm,s,nasm,"
    "cu,cuh,glsl,vert,frag,geom,comp,hlsl,wgsl,metal,ino,pde,qml,qbs,vala,vapi,cr,sol,move,proto,thrift,fbs,"
    "graphql,gql,sql,psql,plsql,ddl,dml,sh,bash,zsh,ksh,csh,tcsh,fish,bat,cmd,ps1,psm1,psd1,awk,sed,m4,ac,am,in,"
    "mk,mak,make,cmake,ninja,bazel,bzl,build,meson,pri,prf,pc,spec,ebuild,dockerfile,tf,tfvars,hcl,nix,dhall,"
    "ini,cfg,conf,config,cnf,properties,prefs,rc,inf,reg,env,toml,yaml,yml,json,json5,jsonc,jsonl,ndjson,geojson,"
    "webmanifest,lock,desktop,service,socket,timer,mount,target,rules,css,scss,sass,less,styl,asp,aspx,ascx,ashx,"
    "cshtml,razor,jsp,jspx,jspf,cfm,cfml,twig,jinja,jinja2,j2,mustache,hbs,handlebars,ejs,pug,jade,haml,slim,liquid,"
    "tpl,tmpl,diff,patch,rej,po,pot,strings,rc2,def,idl,odl,map,sym,sln,vcproj,vcxproj,csproj,vbproj,fsproj,props,"
    "targets,nuspec,ui,qrc,xaml,xsd,xsl,xslt,dtd,rng,rnc,wsdl,vim,ahk,au3,nsi,nsh,iss,dot,gv,puml,plantuml,mmd,"
    "gitignore,gitattributes,gitmodules,editorconfig,htaccess,npmrc,bashrc,profile,url,webloc,m3u,m3u8,pls,cue";

std::uint64_t within(std::uint64_t bytes, std::uint64_t limit)
{
    return limit == 0 ? bytes : std::min(bytes, limit);
}

ReadOutcome putText(std::u16string_view text, bool more, DocumentSink& sink)
{
    sink.text(text);
    if (more)
        sink.leavesMore();
    return {};
}

// Goes beyond the sample, for only its own text tells what such a file would weigh in UTF-8.
ReadOutcome readReencoded(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    const std::uint64_t wanted = services.options.weighedCharacters() * mostBytesOfUnit;
    const auto bytes = readBeginning(file, within(wanted, services.options.largestStream));
    if (!bytes)
        return unreadable(bytes.error());
    ReadOutcome outcome = putText(decodeText(*bytes, services.decoding).text, bytes->size() < file.size(), sink);
    outcome.reencoded = true;
    return outcome;
}

ReadOutcome readPlainText(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    // The size of a file in UTF-8 tells what it weighs, so nothing beyond the sample is looked at.
    const std::uint64_t wanted = services.options.textSample * mostBytesOfUnit + headLength;
    const auto bytes = readBeginning(file, within(wanted, services.options.largestStream));
    if (!bytes)
        return unreadable(bytes.error());
    if (bytes->empty())
        return {};
    if (!looksLikeText(std::span(*bytes).first(std::min(bytes->size(), headLength))))
        return {TextOutcome::damaged, {}, {}};
    const DecodedText decoded = decodeText(*bytes, services.decoding);
    if (decoded.charset == "utf-8")
        return putText(decoded.text, bytes->size() < file.size(), sink);
    return readReencoded(file, services, sink);
}

}  // namespace

const DocumentFormat plainTextFormat = {
    .name = "text", .masks = textMasks, .plain = true, .textual = true, .read = readPlainText};

const DocumentFormat sourceCodeFormat = {
    .name = "source code", .masks = sourceMasks, .plain = true, .textual = true, .read = readPlainText};

}  // namespace kelvane
