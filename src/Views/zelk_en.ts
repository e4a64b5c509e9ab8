<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>zelk</name>
    <message numerus="yes">
        <source>%1 node(s)</source>
        <translation>
            <numerusform>%1 node</numerusform>
            <numerusform>%1 nodes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n leftover file(s) no longer in your playlists</source>
        <translation>
            <numerusform>%n leftover file no longer in your playlists</numerusform>
            <numerusform>%n leftover files no longer in your playlists</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n playlist(s)</source>
        <translation>
            <numerusform>%n playlist</numerusform>
            <numerusform>%n playlists</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n review(s)</source>
        <translation>
            <numerusform>%n review</numerusform>
            <numerusform>%n reviews</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n track(s)</source>
        <translation>
            <numerusform>%n track</numerusform>
            <numerusform>%n tracks</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %n more file(s)…</source>
        <translation>
            <numerusform>and %n more file…</numerusform>
            <numerusform>and %n more files…</numerusform>
        </translation>
    </message>
</context>
</TS>
