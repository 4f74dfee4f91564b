<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
    <context>
        <name>FetchyardClient::MainWindow</name>
        <message numerus="yes">
            <source>and %n more</source>
            <translation>
                <numerusform>and %n more</numerusform>
                <numerusform>and %n more</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s) of an earlier run were left unfinished.</source>
            <translation>
                <numerusform>%n task of an earlier run was left unfinished.</numerusform>
                <numerusform>%n tasks of an earlier run were left unfinished.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s) removed from the list. Their files stay.</source>
            <translation>
                <numerusform>%n task removed from the list. Its files stay.</numerusform>
                <numerusform>%n tasks removed from the list. Their files stay.</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n file(s) too many: only the first %1 are run</source>
            <translation>
                <numerusform>%n file too many: only the first %1 are run</numerusform>
                <numerusform>%n files too many: only the first %1 are run</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>Delete %n task(s) and the folders of their exports?</source>
            <translation>
                <numerusform>Delete %n task and the folder of its export?</numerusform>
                <numerusform>Delete %n tasks and the folders of their exports?</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>Copied what went wrong with %n task(s)</source>
            <translation>
                <numerusform>Copied what went wrong with %n task</numerusform>
                <numerusform>Copied what went wrong with %n tasks</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s) are on their way. Stop them and quit?</source>
            <translation>
                <numerusform>%n task is on its way. Stop it and quit?</numerusform>
                <numerusform>%n tasks are on their way. Stop them and quit?</numerusform>
            </translation>
        </message>
    </context>
    <context>
        <name>FetchyardClient::Notices</name>
        <message numerus="yes">
            <source>Fetchyard: %n task(s) run</source>
            <translation>
                <numerusform>Fetchyard: %n task runs</numerusform>
                <numerusform>Fetchyard: %n tasks run</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s) ended</source>
            <translation>
                <numerusform>%n task ended</numerusform>
                <numerusform>%n tasks ended</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s) ended, %1 of them failed</source>
            <translation>
                <numerusform>%n task ended, %1 of them failed</numerusform>
                <numerusform>%n tasks ended, %1 of them failed</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>and %n more</source>
            <translation>
                <numerusform>and %n more</numerusform>
                <numerusform>and %n more</numerusform>
            </translation>
        </message>
    </context>
    <context>
        <name>Tasks</name>
        <message numerus="yes">
            <source>%n page(s)</source>
            <translation>
                <numerusform>%n page</numerusform>
                <numerusform>%n pages</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n picture(s)</source>
            <translation>
                <numerusform>%n picture</numerusform>
                <numerusform>%n pictures</numerusform>
            </translation>
        </message>
    </context>
</TS>
