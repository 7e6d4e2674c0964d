include app.dat
program:
	@echo "$(LINKS_NAME), $(LINKS_TYPE), $(LINKS_VERSION), $(LINKS_PATH)" > $(PRODUCT_PATH)/program
