# What is drawn: images, layers, labels, the table, and how they move.
foreach(test
    AnimatorTest
    BezierPathTest
    BottomPanelViewTest
    ImageTest
    ImageViewTest
    LabelTest
    LayerFadeTest
    LayerTest
    LayoutConstraintTest
    TableCellViewTest
    TableViewSelectionTest
    TableViewTest
)
    plovendix_test(${test} SOURCES ${test}.cpp DEPENDS platform_toolkit)
endforeach()
