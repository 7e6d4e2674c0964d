# Messages for the golden runs: each says its number and its role.


# Questions and answers
001 ynq
035 <35 answer hint>
053 %s%s %s
034 <34 confirm selection>
299 <299 farewell>\n

# Files
005 install
095 <95 file not opened>
096 <96 file not opened end>
141 <141 generated head 1>
142 <142 generated head 2>
143 <143 generated head 3>

# Screen and start-up header
008 : |
009  :
010 ------------------------------------------------------------------------
011 <11 header title>
012 <12 header text 1>
013 <13 header text 2>
014 <14 header text 3>
015 <15 header text 4>
016 <16 header text 5>
019 <19 header subtitle>

# The run
040 <40 not superuser>
041 <41 not superuser consequence 1>
042 <42 not superuser consequence 2>
043 <43 change settings>
044 <44 settings asked again>
100 <100 last question>
124 <124 host unsuitable>
125 <125 go on all the same>

# Product selection
017 <17 product list heading>
024 <24 how to select 1>
018 <18 how to select 2>
029 <29 how to select 3>
021 <21 selection heading>
022 <22 nothing selected>
023 <23 nothing offered>
025 <25 none>
026 <26 press enter>
027 <27 abstract heading>
028 <28 hardware heading>
046 <46 tools heading>
047 <47 tools of every installation>
048 <48 tools of product>
094 <94 product refused>
154 <154 selection confirmed>

# Owner, group and access
030 <30 owner question>
031 <31 unknown user>
032 <32 group question>
033 <33 unknown group>
075 <75 access question: %s>

# Rights
037 true
097 <97 no rights>
098 <98 no rights owner>
099 <99 no rights group>
101 <101 probe not created>
102 <102 site rights failed>
103 <103 site rights failed superuser>

# Board and bus
062 <62 board of bus 1>
063 busA
064 <64 board family 1>
065 4
066 <66 board of bus 2a>
067 <67 board of bus 2b>
068 <68 board family 2>
069 4
070 busB
071 <71 bus question>

# Host
114 <114 host not identified>
115 @SYSTEM@
116 OtherOS
117 <117 system not supported: %s %s %s>\n
118 <118 system 1 release too old: %s>\n
119 <119 system 2 release too old: %s>\n
120 @MACHINE@
121 <121 machine not supported: %s>\n
122 true
123 <123 site host failed>\n

# Tools
146 <146 tool not found>
147 <147 tools missing>
148 <148 quit without tools>
149 <149 without tools 1>
150 <150 without tools 2>
151 <151 go on without tools>
152 <152 unselect product>
153 <153 keep product>

# Installation path
127 <127 path question heading>
128 <128 path question>
129 <129 path missing>
130 <130 path not absolute>
131 <131 path failed>
132 <132 create directory>
133 <133 path not writable: %s>\n
134 <134 user of path unknown>

# Targets
090 <90 no rights for target>
091 <91 product given up>
092 <92 target installed>

# Links tool
003 links.conf
004 /nonexistent/links.conf
104 <104 links file missing 1>
105 <105 links file missing 2>
106 <106 links file question>
107 <107 links file question again>
109 <109 links file not there>
110 <110 links file wrong name>
111 |
112 |
113  2>/dev/null

# Categories and types whose installed version has a fallback
240 LINKS
241 STANDIN
245 STOODFOR
250 linksa
251 linksb
254 linksc
255 linksd

# Dependencies
256 <unknown type>
257 <not on host>
260 <260 dependency product>
261 <261 dependency target>
262 <262 dependency needs>
263 <263 dependency category>
264 <264 dependency category end>
265 <265 candidate in this run>
266 <266 type choice>
267 <267 type choice end>
268 <268 candidate could be>
269 <269 patch needs>
270 <270 directory question>
271 <271 directory question end>
272 <272 mismatch heading>
274 <274 mismatch reasons>
276 <276 accept mismatch>
277 <277 accept candidate>
278 <278 mismatch version>
279 <279 mismatch files>
281 <281 patch candidate>
287 <287 patch directory>
289 <289 leave patch open>
290 <290 patch not found>

# Keywords of the descriptions
200 DescriptionState
201 Name
202 FullName
203 Version
204 Patch
205 Category
206 Type
207 Abstract
208 Hardware
209 Target
210 NeedsCategory
211 NeedsText
212 NeedsType
213 NeedsVersion
214 NeedsPatch
215 NeedsFiles
216 RequiredPatches
217 Path
218 PathVariable
219 Owner
220 Group
221 FixedOwners
222 FixedGroups
223 Ask
224 NeedsPath
225 AskAgain
226 TargetOwner
227 TargetGroup
228 SuppliersElsewhere
229 PathInfo
230 OwnerInfo
231 GroupInfo
232 AccessInfo
233 NeededTools

017 replaced
17  \a\\ tab[\t] line\n[bar\|] end  |
# 017 a comment
500 out of range
-17 negative
18
