#include "CATBaseUnknown.h"
#include "CATIProgressTaskUI.h"
#include "VOZStatus.h"

#include <gtest/gtest.h>

// Of linkage to the outside, so that the metadata of both need not be used up.
class Animal : public CATBaseUnknown
{
    CATDeclareClass;

public:
    explicit Animal(int * io_alive) : mAlive(io_alive) { ++*mAlive; }
    Animal(Animal const & i_other) : CATBaseUnknown(i_other), mAlive(i_other.mAlive) { ++*mAlive; }
    Animal & operator=(Animal const &) = default;
    ~Animal() override { --*mAlive; }

private:
    int * mAlive;
};
class Dog : public Animal
{
    CATDeclareClass;

public:
    using Animal::Animal;
};
CATImplementClass(Animal, CATBaseUnknown)
CATImplementClass(Dog, Animal)
CATDeclareInterfaceVar(Animal);
CATDeclareInterfaceVar(Dog);

namespace
{
TEST(BaseUnknown, RegistersUnderItsNameWithTypeBaseAndTheTwoTexts)
{
    CATMetaClass const * const meta = Animal::MetaObject();
    EXPECT_STREQ(meta->Name(), "Animal");
    EXPECT_EQ(meta->ClassType(), 1);
    EXPECT_EQ(meta->Base(), CATBaseUnknown::MetaObject());
    EXPECT_STREQ(meta->Extended(), "CATNull");
    EXPECT_STREQ(meta->Kind(), "External");
    EXPECT_EQ(CATBaseUnknown::MetaObject()->Base(), nullptr);
    EXPECT_STREQ(CATBaseUnknown::ClassName(), "CATBaseUnknown");
}

TEST(BaseUnknown, KeepsOneMetaObjectPerName)
{
    EXPECT_EQ(Animal::MetaObject(), Animal::MetaObject());
    EXPECT_EQ(fct_RetrieveMetaObject("Animal", 1, nullptr, "", ""), Animal::MetaObject());
    EXPECT_EQ(&Animal::ClassId(), Animal::MetaObject());
    EXPECT_NE(Dog::MetaObject(), Animal::MetaObject());
}

TEST(BaseUnknown, TellsItsOwnClassAndItsBases)
{
    int alive = 0;
    Dog const dog(&alive);
    CATBaseUnknown const & seen = dog;
    EXPECT_STREQ(seen.IsA(), "Dog");
    EXPECT_EQ(seen.GetMetaObject(), Dog::MetaObject());
    EXPECT_EQ(seen.IsAKindOf("Dog"), 1);
    EXPECT_EQ(seen.IsAKindOf("Animal"), 1);
    EXPECT_EQ(seen.IsAKindOf("CATBaseUnknown"), 1);
    EXPECT_EQ(seen.IsAKindOf("Cat"), 0);
    EXPECT_EQ(seen.IsAKindOf(nullptr), 0);
    EXPECT_EQ(Animal(&alive).IsAKindOf("Dog"), 0);
}

TEST(BaseUnknown, StartsWithOneReferenceAndGoesWithTheLast)
{
    int alive = 0;
    auto * const dog = new Dog(&alive);
    EXPECT_EQ(dog->AddRef(), 2U);
    EXPECT_EQ(dog->Release(), 1U);
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(dog->Release(), 0U);
    EXPECT_EQ(alive, 0);
}

TEST(BaseUnknown, ACopyCountsForItself)
{
    int alive = 0;
    auto * const dog = new Dog(&alive);
    dog->AddRef();
    auto * const copy = new Dog(*dog);
    *copy = *dog;
    EXPECT_EQ(copy->Release(), 0U);
    EXPECT_EQ(dog->Release(), 1U);
    EXPECT_EQ(dog->Release(), 0U);
    EXPECT_EQ(alive, 0);
}

TEST(BaseUnknown, GivesItselfForItsKindsAndNothingElse)
{
    int alive = 0;
    auto * const dog = new Dog(&alive);
    CATBaseUnknown * found = nullptr;
    EXPECT_EQ(dog->QueryInterface("Animal", &found), 0);
    EXPECT_EQ(found, dog);
    EXPECT_EQ(dog->Release(), 1U);
    EXPECT_EQ(found->QueryInterface("Cat", &found), E_NOINTERFACE);
    EXPECT_EQ(found, nullptr);
    dog->Release();
    EXPECT_EQ(alive, 0);
}

TEST(InterfaceVar, HoldsOneReferenceAndAsksOnTheWay)
{
    int alive = 0;
    auto * const dog = new Dog(&alive);
    {
        Animal_var const animal(dog);
        Dog_var const back(animal);
        EXPECT_EQ(back.Object(), dog);
        EXPECT_STREQ(back->IsA(), "Dog");
        EXPECT_EQ(dog->AddRef(), 4U);
        dog->Release();
    }
    EXPECT_EQ(dog->Release(), 0U);
    EXPECT_EQ(alive, 0);
}

TEST(InterfaceVar, IsNullWhereTheObjectIsOfAnotherKind)
{
    int alive = 0;
    Animal_var const animal = Animal_var(Animal_var::Adopt(new Animal(&alive)));
    Dog_var const dog(animal);
    EXPECT_TRUE(!dog);
    EXPECT_FALSE(static_cast<bool>(dog));
    EXPECT_TRUE(!Dog_var());
    EXPECT_TRUE(!Dog_var(nullptr));
}

TEST(InterfaceVar, AssignmentReleasesTheOldAndSurvivesItself)
{
    int alive = 0;
    Dog_var first(Dog_var::Adopt(new Dog(&alive)));
    Dog_var second(Dog_var::Adopt(new Dog(&alive)));
    first = second;
    EXPECT_EQ(alive, 1);
    Dog_var const & same = first;
    first = same;
    EXPECT_EQ(first.Object(), second.Object());
    first = Dog_var();
    second = Dog_var();
    EXPECT_EQ(alive, 0);
}

TEST(ProgressTask, TakesItsProgressThroughTheInterface)
{
    class Task : public CATIProgressTaskUI
    {
    public:
        short last = -1;
        void SetProgress(short i_percent) override { last = i_percent; }
    };
    Task task;
    CATIProgressTaskUI & seen = task;
    seen.SetProgress(42);
    EXPECT_EQ(task.last, 42);
    EXPECT_STREQ(seen.IsA(), "CATIProgressTaskUI");
}

TEST(Status, IsTheNegativeNumberWithTheseLowBits)
{
    EXPECT_LT(static_cast<long>(E_FAIL), 0);
    EXPECT_EQ(static_cast<unsigned int>(static_cast<int>(E_FAIL)), 0x80004005U);
    EXPECT_EQ(static_cast<unsigned int>(static_cast<int>(E_NOINTERFACE)), 0x80004002U);
}
} // namespace
