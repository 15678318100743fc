#pragma once

/// The codes of the subtitle service family as text tables. Only ServiceLanguages.cpp reads them.
namespace LanguageTable
{
/// Two-letter codes of ISO 639-1 and the family's three-letter codes. Greek is "ell" and Serbian "scc" in
/// this family.
inline constexpr char TwoToThree[] =
    "aa:aar ab:abk ae:ave af:afr ak:aka am:amh an:arg ar:ara as:asm av:ava ay:aym az:aze "
    "ba:bak be:bel bg:bul bh:bih bi:bis bm:bam bn:ben bo:tib br:bre bs:bos ca:cat ce:che "
    "ch:cha co:cos cr:cre cs:cze cu:chu cv:chv cy:wel da:dan de:ger dv:div dz:dzo ee:ewe "
    "el:ell en:eng eo:epo es:spa et:est eu:baq fa:per ff:ful fi:fin fj:fij fo:fao fr:fre "
    "fy:fry ga:gle gd:gla gl:glg gn:grn gu:guj gv:glv ha:hau he:heb hi:hin ho:hmo hr:hrv "
    "ht:hat hu:hun hy:arm hz:her ia:ina id:ind ie:ile ig:ibo ii:iii ik:ipk io:ido is:ice "
    "it:ita iu:iku ja:jpn jv:jav ka:geo kg:kon ki:kik kj:kua kk:kaz kl:kal km:khm kn:kan "
    "ko:kor kr:kau ks:kas ku:kur kv:kom kw:cor ky:kir la:lat lb:ltz lg:lug li:lim ln:lin "
    "lo:lao lt:lit lu:lub lv:lav mg:mlg mh:mah mi:mao mk:mac ml:mal mn:mon mr:mar ms:may "
    "mt:mlt my:bur na:nau nb:nob nd:nde ne:nep ng:ndo nl:dut nn:nno no:nor nr:nbl nv:nav "
    "ny:nya oc:oci oj:oji om:orm or:ori os:oss pa:pan pi:pli pl:pol ps:pus pt:por qu:que "
    "rm:roh rn:run ro:rum ru:rus rw:kin sa:san sc:srd sd:snd se:sme sg:sag si:sin sk:slo "
    "sl:slv sm:smo sn:sna so:som sq:alb sr:scc ss:ssw st:sot su:sun sv:swe sw:swa ta:tam "
    "te:tel tg:tgk th:tha ti:tir tk:tuk tl:tgl tn:tsn to:ton tr:tur ts:tso tt:tat tw:twi "
    "ty:tah ug:uig uk:ukr ur:urd uz:uzb ve:ven vi:vie vo:vol wa:wln wo:wol xh:xho yi:yid "
    "yo:yor za:zha zh:chi zu:zul ";

/// Other spellings of a three-letter code, as people and players write them.
inline constexpr char Spellings[] =
    "gre:ell srp:scc deu:ger fra:fre nld:dut ces:cze ron:rum slk:slo sqi:alb hye:arm eus:baq mya:bur zho:chi "
    "kat:geo "
    "isl:ice mkd:mac mri:mao msa:may fas:per bod:tib cym:wel cnr:mne mol:rum scr:hrv ";

/// The family's private codes that are no ISO 639-1: two-letter, three-letter, and the language tag that
/// names them.
inline constexpr char Private[] =
    "pb:pob:pt_BR pm:pom:pt_MZ me:mne:cnr at:ast:ast ma:mni:mni sy:syr:syr ze:zhe:zh zt:zht:zh_TW ex:ext:ext "
    "ea:spl:es_419 sp:spn:es_ES pr:prs:fa_AF sx:sat:sat tp:tok:tok ";

/// Withdrawn two-letter codes and language tags with a region that has a code of its own.
inline constexpr char Tags[] = "iw:heb in:ind ji:yid mo:rum pt-br:pob pt-pt:por pt-mz:pom zh-cn:chi "
                               "zh-tw:zht zh-hans:chi zh-hant:zht es-419:spl "
                               "es-mx:spl es-es:spa az-az:aze az-zb:azb zh-ca:zhc tm-td:tet yue:zhc ";
} // namespace LanguageTable
