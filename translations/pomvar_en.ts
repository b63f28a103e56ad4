<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>pomvar::srv::CategoryInfoWindow</name>
    <message numerus="yes">
        <source>%n app(s)</source>
        <translation>
            <numerusform>%n app</numerusform>
            <numerusform>%n apps</numerusform>
        </translation>
    </message>
</context>
</TS>
